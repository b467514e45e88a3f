import assert from 'node:assert/strict';
import { test } from 'node:test';

import { createLink, openLink, pairingText } from '../../demo/page/link.js';

/** The official client as far as the page uses it; the test plays the server. */
function fakeClient() {
  const client = { sent: [], joins: 0 };
  client.channel = (topic, options) => {
    client.topic = topic;
    client.options = options;
    return {
      on: (kind, { event }, hear) => {
        client.listens = [kind, event];
        client.hear = hear;
      },
      subscribe: (tell) => {
        client.joins += 1;
        client.become = tell;
      },
      send: (message) => client.sent.push(message),
    };
  };
  return client;
}

function linked(running = false) {
  const client = fakeClient();
  const page = { state: { running }, obeyed: [], joined: [] };
  const note =
    (word) =>
    (...values) =>
      page.obeyed.push([word, ...values]);
  const link = createLink(client, 'k', {
    commands: Object.fromEntries(
      ['stop', 'plus5', 'minus5', 'task', 'subito', 'vai'].map((w) => [w, note(w)]),
    ),
    snapshot: () => page.state,
    onJoined: (joined) => page.joined.push(joined),
  });
  return { client, page, link };
}

const told = ({ client }) => client.sent.map(({ type, event, payload }) => [type, event, payload.running]);
const kRunning = ['broadcast', 'state', true];
const kEnded = ['broadcast', 'state', false];

test('it joins the user’s own channel and does not ask to hear itself', () => {
  const { client } = linked();
  assert.equal(client.topic, 'ov:k');
  assert.deepEqual(client.options, { config: { broadcast: { self: false, ack: false } } });
  assert.deepEqual(client.listens, ['broadcast', 'cmd']);
});

test('a running session is told from the join on, its end once, and then nothing', () => {
  const one = linked(true);
  one.link.tell();
  assert.deepEqual(told(one), []);
  one.client.become('SUBSCRIBED');
  one.link.tell();
  assert.deepEqual(told(one), [kRunning, kRunning]);
  one.page.state = { running: false };
  one.link.tell();
  one.link.tell();
  assert.deepEqual(told(one), [kRunning, kRunning, kEnded]);
});

test('a page without a session says nothing, so that it covers up nobody’s', () => {
  const one = linked();
  one.client.become('SUBSCRIBED');
  one.link.tell();
  assert.deepEqual(told(one), []);
});

test('an end that came while the link was down is told when it is back', () => {
  const one = linked(true);
  one.client.become('SUBSCRIBED');
  one.client.become('CHANNEL_ERROR');
  one.page.state = { running: false };
  one.link.tell();
  assert.deepEqual(told(one), [kRunning]);
  one.client.become('SUBSCRIBED');
  assert.deepEqual(told(one), [kRunning, kEnded]);
  assert.deepEqual(one.page.joined, [true, false, true]);
});

test('the four commands of a session are obeyed, with an id where it is a text', () => {
  const { client, page } = linked(true);
  for (const payload of [
    { command: 'stop' },
    { command: 'plus5', id: null },
    { command: 'task', id: "l'una" },
    { command: 'minus5', id: 5 },
  ]) {
    client.hear({ type: 'broadcast', event: 'cmd', payload });
  }
  assert.deepEqual(page.obeyed, [
    ['stop', null],
    ['plus5', null],
    ['task', "l'una"],
    ['minus5', null],
  ]);
});

test('whatever else comes as a command is ignored, also what only the desktop may ask for', () => {
  const { client, page } = linked(true);
  for (const payload of [
    undefined,
    null,
    5,
    'stop',
    {},
    { command: 'subito' },
    { command: 'vai', id: '/' },
    { command: 'toString' },
    { command: ['stop'] },
  ]) {
    client.hear({ type: 'broadcast', event: 'cmd', payload });
  }
  assert.deepEqual(page.obeyed, []);
});

test('a command is given to the others once joined, and with an id only where there is one', () => {
  const { client, page, link } = linked();
  link.command('stop', null);
  client.become('SUBSCRIBED');
  link.command('stop', null);
  link.command('task', 'a');
  assert.deepEqual(client.sent, [
    { type: 'broadcast', event: 'cmd', payload: { command: 'stop' } },
    { type: 'broadcast', event: 'cmd', payload: { command: 'task', id: 'a' } },
  ]);
  client.hear({ type: 'broadcast', event: 'cmd', payload: { command: 'stop' } });
  assert.equal(client.sent.length, 2);
  assert.deepEqual(page.obeyed, [['stop', null]]);
});

test('the copied text has one value a line', () => {
  assert.equal(
    pairingText({ url: 'http://localhost:4717', anonKey: 'eyJa', channelKey: '0f' }),
    'ORVALLE_URL=http://localhost:4717\nORVALLE_ANON_KEY=eyJa\nORVALLE_CHANNEL_KEY=0f\n',
  );
});

// The page around the link

function fakeWindow({ answer, locks }) {
  return {
    location: { origin: 'http://localhost:1' },
    navigator: { locks },
    fetch: async () => answer,
  };
}

const kAnswer = { ok: true, json: async () => ({ anonKey: 'eyJ', channelKey: 'k' }) };

function opened(window) {
  const clients = [];
  const link = openLink(window, {
    loadClient: async () =>
      function (address, options) {
        const client = fakeClient();
        clients.push({ client, address, options });
        return client;
      },
    commands: {},
    snapshot: () => ({ running: true }),
    onChange: () => {},
  });
  return { link, clients };
}

test('with the server’s keys the official client is opened on the page’s own server', async () => {
  const { link, clients } = opened(fakeWindow({ answer: kAnswer }));
  await link.opened;
  assert.deepEqual(link.pairing, { url: 'http://localhost:1', anonKey: 'eyJ', channelKey: 'k' });
  assert.equal(clients.length, 1);
  assert.equal(clients[0].address, 'ws://localhost:1/realtime/v1');
  assert.deepEqual(clients[0].options.params, { apikey: 'eyJ' });
  clients[0].client.become('SUBSCRIBED');
  assert.equal(link.status, 'attivo');
  clients[0].client.become('CHANNEL_ERROR');
  assert.equal(link.status, 'interrotto');
});

test('a server without keys is asked for nothing more', async () => {
  for (const answer of [
    { ...kAnswer, ok: false },
    { ok: true, json: async () => ({ channelKey: 'k' }) },
    { ok: true, json: async () => ({ anonKey: 'eyJ' }) },
    { ok: true, json: async () => JSON.parse('<!doctype html>') },
    null,
  ]) {
    const { link, clients } = opened(fakeWindow({ answer }));
    await link.opened;
    link.tell();
    assert.equal(link.pairing, null);
    assert.equal(link.status, 'assente');
    assert.equal(clients.length, 0);
  }
});

test('of several windows of a browser one keeps the link, the next one when it closes', async () => {
  const waiting = [];
  const locks = { request: (name, run) => new Promise((resolve) => waiting.push(() => resolve(run()))) };
  const [first, second] = [1, 2].map(() => opened(fakeWindow({ answer: kAnswer, locks })));
  await new Promise((resolve) => setTimeout(resolve));
  waiting[0]();
  await new Promise((resolve) => setTimeout(resolve));
  assert.deepEqual([first.clients.length, second.clients.length], [1, 0]);
  assert.equal(second.link.status, 'altrove');
  waiting[1]();
  await new Promise((resolve) => setTimeout(resolve));
  assert.equal(second.clients.length, 1);
});
