// The official client against our server, under both serializers.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import {
  createClient,
  eventually,
  joinChannel as join,
  kChannelKey,
  pause,
  startServer,
} from './realtime_server.mjs';

const kState = {
  running: true,
  isBreak: false,
  elapsedMin: 1.25,
  remainingMin: 23.75,
  plannedMin: 25,
  projectTitle: 'Tesi «à» 🍅',
  origin: 'http://localhost',
  tasks: [{ id: "l'una", title: 'Leggere', done: false }],
};

const send = (channel, event, payload) => channel.send({ type: 'broadcast', event, payload });

for (const vsn of ['1.0.0', '2.0.0']) {
  test(`${vsn}: a client joins its channel, and everybody else there hears its broadcasts`, async (t) => {
    const server = await startServer(t);
    const one = join(createClient(t, server, { vsn }));
    await one.joined;
    assert.equal(one.channel.topic, `realtime:ov:${kChannelKey}`);
    const others = ['1.0.0', '2.0.0'].map((other) => join(createClient(t, server, { vsn: other })));
    const elsewhere = join(createClient(t, server, { vsn }), { topic: 'ov:un-altro' });
    await Promise.all([...others, elsewhere].map(({ joined }) => joined));

    assert.equal(await send(one.channel, 'state', kState), 'ok');
    for (const other of others) {
      await eventually(() => other.heard.length);
      assert.deepEqual(other.heard, [['state', kState]]);
      await send(other.channel, 'cmd', { command: 'task', id: "l'una" });
    }
    await eventually(() => one.heard.length === 2);
    assert.deepEqual(one.heard, Array(2).fill(['cmd', { command: 'task', id: "l'una" }]));
    await pause(100);
    assert.deepEqual(elsewhere.heard, []);
  });

  test(`${vsn}: who asks for it hears itself, and gets a receipt`, async (t) => {
    const server = await startServer(t);
    const plain = join(createClient(t, server, { vsn }));
    const asking = join(createClient(t, server, { vsn, timeout: 1000 }), {
      broadcast: { self: true, ack: true },
    });
    await Promise.all([plain.joined, asking.joined]);
    assert.equal(await send(asking.channel, 'state', kState), 'ok');
    await eventually(() => asking.heard.length && plain.heard.length);
    assert.deepEqual(asking.heard, [['state', kState]]);
    await send(plain.channel, 'state', kState);
    await eventually(() => asking.heard.length === 2);
    await pause(100);
    assert.equal(plain.heard.length, 1);
  });

  test(`${vsn}: who has left hears nothing any more, and may come back`, async (t) => {
    const server = await startServer(t);
    const client = createClient(t, server, { vsn });
    const one = join(client);
    const other = join(createClient(t, server, { vsn }));
    await Promise.all([one.joined, other.joined]);
    assert.equal(await one.channel.unsubscribe(), 'ok');
    assert.equal(one.statuses.at(-1), 'CLOSED');
    await send(other.channel, 'state', kState);
    await pause(100);
    assert.deepEqual(one.heard, []);
    const again = join(client);
    await again.joined;
    await send(other.channel, 'state', kState);
    await eventually(() => again.heard.length);
    assert.deepEqual(one.heard, []);
  });

  test(`${vsn}: with a wrong key nobody gets in`, async (t) => {
    const server = await startServer(t);
    const one = join(createClient(t, server, { vsn, key: 'sbagliata' }));
    await assert.rejects(one.joined);
    await pause(100);
    assert.ok(!one.statuses.includes('SUBSCRIBED'));
  });

  test(`${vsn}: a private channel is refused`, async (t) => {
    const server = await startServer(t);
    const channel = createClient(t, server, { vsn }).channel('ov:x', { config: { private: true } });
    const status = await new Promise((resolve) =>
      channel.subscribe((word, error) => resolve([word, String(error)])),
    );
    assert.equal(status[0], 'CHANNEL_ERROR');
    assert.match(status[1], /Unauthorized/);
  });

  test(`${vsn}: heartbeats keep a connection, silence closes it, and the client comes back`, async (t) => {
    const server = await startServer(t, { idle: 1 });
    const heartbeats = [];
    const awake = createClient(t, server, {
      vsn,
      heartbeatIntervalMs: 300,
      heartbeatCallback: (status) => heartbeats.push(status),
    });
    const asleep = createClient(t, server, { vsn, reconnectAfterMs: () => 50 });
    const one = join(awake);
    const other = join(asleep);
    await Promise.all([one.joined, other.joined]);
    let closes = 0;
    asleep.socketAdapter.getSocket().onClose(({ code }) => (closes += code === 1000));
    await eventually(() => closes === 1);
    await eventually(() => other.statuses.filter((word) => word === 'SUBSCRIBED').length === 2);
    assert.deepEqual(one.statuses, ['SUBSCRIBED']);
    assert.ok(heartbeats.filter((status) => status === 'ok').length >= 2, String(heartbeats));
    await send(one.channel, 'state', kState);
    await eventually(() => other.heard.length);
  });

  test(`${vsn}: when the server comes back, so do its clients`, async (t) => {
    const first = await startServer(t);
    const one = join(createClient(t, first, { vsn, reconnectAfterMs: () => 50 }));
    const other = join(createClient(t, first, { vsn, reconnectAfterMs: () => 50 }));
    await Promise.all([one.joined, other.joined]);
    assert.equal(await first.stop(), 0);
    const second = await startServer(t, { port: first.port });
    assert.equal(second.port, first.port);
    const joins = ({ statuses }) => statuses.filter((word) => word === 'SUBSCRIBED').length;
    await eventually(() => joins(one) === 2 && joins(other) === 2);
    await send(one.channel, 'state', kState);
    await eventually(() => other.heard.length);
    assert.deepEqual(other.heard, [['state', kState]]);
  });
}

test('bytes reach those who can take them, and nobody else', async (t) => {
  const server = await startServer(t);
  const [one, other, old] = ['2.0.0', '2.0.0', '1.0.0'].map((vsn) => join(createClient(t, server, { vsn })));
  await Promise.all([one, other, old].map(({ joined }) => joined));
  const bytes = Uint8Array.from([0, 255, 128, 10]);
  await send(one.channel, 'state', bytes.buffer);
  await send(one.channel, 'cmd', { command: 'stop' });
  await eventually(() => other.heard.length === 2 && old.heard.length);
  assert.deepEqual(new Uint8Array(other.heard[0][1]), bytes);
  assert.deepEqual(old.heard, [['cmd', { command: 'stop' }]]);
});
