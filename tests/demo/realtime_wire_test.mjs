// The wire as it is, frame by frame, good and bad.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import { kAnonKey, openSocket, pause, startServer } from './realtime_server.mjs';

const kTopic = 'realtime:ov:k';
const join = (ref, broadcast = { self: false, ack: false }) => ({
  topic: kTopic,
  event: 'phx_join',
  payload: { config: { broadcast, presence: { key: '' }, private: false } },
  ref,
});
const ok = (topic, ref, response = {}) => ({
  topic,
  event: 'phx_reply',
  payload: { status: 'ok', response },
  ref,
});
const joined = (ref) => ok(kTopic, ref, { postgres_changes: [] });
const state = (payload, ref = '9') => ({
  topic: kTopic,
  event: 'broadcast',
  payload: { type: 'broadcast', event: 'state', payload },
  ref,
});

async function member(t, server, ref = '1') {
  const connection = await openSocket(t, server);
  connection.send(join(ref));
  assert.deepEqual(await connection.next(), joined(ref));
  return connection;
}

test('the handshake wants the key and a known serializer', async (t) => {
  const server = await startServer(t);
  for (const query of ['', 'apikey=', 'apikey=x', `apikey=${kAnonKey}x`, `apikey=${kAnonKey}&vsn=3.0.0`]) {
    await assert.rejects(openSocket(t, server, { query }), /HTTP 403/, query);
  }
  for (const query of [
    `apikey=${kAnonKey}`,
    `vsn=1.0.0&apikey=${kAnonKey}`,
    `apikey=${kAnonKey}&vsn=2.0.0&altro=1`,
  ]) {
    await openSocket(t, server, { query });
  }
});

test('objects: frames of four members, answers with the number of the question', async (t) => {
  const server = await startServer(t);
  const one = await member(t, server, '1');
  one.send({ topic: 'phoenix', event: 'heartbeat', payload: {}, ref: '2' });
  assert.deepEqual(await one.next(), ok('phoenix', '2'));
  const other = await member(t, server, '7');
  other.send(state({ running: true }));
  assert.deepEqual(await one.next(), { ...state({ running: true }), ref: null });
  one.send({ topic: kTopic, event: 'phx_leave', payload: {}, ref: '3' });
  assert.deepEqual(await one.next(), ok(kTopic, '3'));
  assert.deepEqual(await one.next(), { topic: kTopic, event: 'phx_close', payload: {}, ref: null });
  one.send(state({}, '4'));
  const refused = { status: 'error', response: { reason: 'unmatched topic' } };
  assert.deepEqual(await one.next(), { topic: kTopic, event: 'phx_reply', payload: refused, ref: '4' });
});

test('arrays: the number of the join comes back with everything about it', async (t) => {
  const server = await startServer(t);
  const one = await openSocket(t, server, { query: `apikey=${kAnonKey}&vsn=2.0.0` });
  one.send(['1', '1', kTopic, 'phx_join', join('1').payload]);
  assert.deepEqual(await one.next(), ['1', '1', kTopic, 'phx_reply', joined('1').payload]);
  one.send([null, '2', 'phoenix', 'heartbeat', {}]);
  assert.deepEqual(await one.next(), [null, '2', 'phoenix', 'phx_reply', { status: 'ok', response: {} }]);
  const other = await member(t, server);
  other.send(state({ running: false }));
  assert.deepEqual(await one.next(), [null, null, kTopic, 'broadcast', state({ running: false }).payload]);
  one.send(['1', '3', kTopic, 'phx_leave', {}]);
  assert.deepEqual(await one.next(), ['1', '3', kTopic, 'phx_reply', { status: 'ok', response: {} }]);
  assert.deepEqual(await one.next(), ['1', '1', kTopic, 'phx_close', {}]);
});

test('a broadcast that is no object ends the membership of its sender alone', async (t) => {
  const server = await startServer(t);
  const [one, other] = [await member(t, server, '1'), await member(t, server, '1')];
  one.send({ ...state({}), payload: 5 });
  assert.deepEqual(await one.next(), { topic: kTopic, event: 'phx_error', payload: {}, ref: null });
  one.send(join('2'));
  assert.deepEqual(await one.next(), joined('2'));
  one.send(state({ running: true }));
  assert.equal((await other.next()).event, 'broadcast');
});

test('what is no frame is dropped, and nobody notices', async (t) => {
  const server = await startServer(t);
  const [one, other] = [await member(t, server), await member(t, server)];
  const bad = [
    '',
    '{',
    'null',
    '5',
    '"x"',
    '[]',
    '{}',
    '['.repeat(100000),
    '{"topic":5,"event":"broadcast","payload":{},"ref":"1"}',
    `{"topic":"${kTopic}","event":null,"payload":{},"ref":"1"}`,
    `{"topic":"${kTopic}","event":"broadcast","ref":"1"}`,
    `{"topic":"${kTopic}","event":"broadcast","payload":{},"ref":{}}`,
    `{"topic":"${kTopic}","event":"broadcast","payload":{"event":"state","payload":1e999},"ref":"1"}`,
    `{"topic":"${kTopic}","event":"broadcast","payload":{"event":"\\ud800"},"ref":"1"}`,
    '{"topic":"phoenix","event":"broadcast","payload":{}',
    Buffer.from([3, 255, 255, 255, 255, 255, 1]),
    Buffer.from([0, 1, 2]),
    Buffer.alloc(0),
  ];
  for (const message of bad) one.send(message);
  for (const payload of [5, 'x', null, true, []]) one.send(state(payload));
  for (const payload of [5, 'x', null, true, []])
    assert.deepEqual(await other.next(), { ...state(payload), ref: null });
  assert.deepEqual(one.messages, []);
});

test('a broken push in bytes is dropped, whatever its lengths say', async (t) => {
  const server = await startServer(t);
  const one = await openSocket(t, server, { query: `apikey=${kAnonKey}&vsn=2.0.0` });
  one.send([null, '1', kTopic, 'phx_join', {}]);
  await one.next();
  const push = (lengths, encoding, rest) =>
    Buffer.concat([Buffer.from([3, ...lengths, encoding]), Buffer.from(rest)]);
  const names = `${kTopic}state`;
  for (const message of [
    Buffer.from([3]),
    Buffer.from([4, 0, 0, 0, 0]),
    push([0, 0, 13, 5, 255], 1, `${names}{}`),
    push([0, 0, 13, 5, 0], 2, `${names}{}`),
    push([0, 0, 13, 5, 0], 1, `${names}{`),
    push([0, 0, 13, 1, 0], 1, Buffer.concat([Buffer.from(kTopic), Buffer.from([0xff]), Buffer.from('{}')])),
  ]) {
    one.send(message);
  }
  one.send([null, '2', 'phoenix', 'heartbeat', {}]);
  assert.equal((await one.next())[3], 'phx_reply');
});

test('a message may be long, but not endless', async (t) => {
  const server = await startServer(t);
  const [one, other] = [await member(t, server), await member(t, server)];
  const title = 'x'.repeat(7 * 1024 * 1024);
  one.send(state({ title }));
  assert.equal((await other.next()).payload.payload.title.length, title.length);
  one.send(state({ title: 'x'.repeat(9 * 1024 * 1024) }));
  // The reason is lost when the rest of the message arrives at a closed door.
  assert.ok([1006, 1009].includes(await one.closed));
  const third = await member(t, server);
  third.send(state({ running: true }));
  assert.equal((await other.next()).payload.event, 'state');
});

test('a silent connection is closed, one that asks for a sign of life now and then is not', async (t) => {
  const server = await startServer(t, { idle: 1 });
  const [asleep, awake] = [await member(t, server), await member(t, server)];
  let seconds = 0;
  const beat = setInterval(
    () => awake.send({ topic: 'phoenix', event: 'heartbeat', payload: {}, ref: 'h' }),
    300,
  );
  t.after(() => clearInterval(beat));
  const began = Date.now();
  assert.equal(await asleep.closed, 1000);
  seconds = (Date.now() - began) / 1000;
  assert.ok(seconds > 0.9 && seconds < 3, `${seconds} s`);
  await pause(1500);
  assert.equal(awake.socket.readyState, 1);
});

test('only so many connections are let in, and the next one when one has gone', async (t) => {
  const server = await startServer(t);
  const all = [];
  for (let number = 0; number < 64; ++number) all.push(await openSocket(t, server));
  await assert.rejects(openSocket(t, server), /HTTP 503/);
  all[0].socket.close();
  await all[0].closed;
  // The server may come to know of the end a moment later.
  const opened = () => openSocket(t, server).catch(() => pause(50));
  const end = Date.now() + 5000;
  while (!(await opened())) assert.ok(Date.now() < end, 'still full');
});

test('only so many channels are kept for one client', async (t) => {
  const server = await startServer(t);
  const one = await openSocket(t, server);
  const joinTo = async (number) => {
    one.send({ ...join('1'), topic: `realtime:${number}` });
    return (await one.next()).payload.status;
  };
  for (let number = 0; number < 100; ++number) assert.equal(await joinTo(number), 'ok');
  assert.equal(await joinTo(100), 'error');
  one.send({ topic: 'realtime:5', event: 'phx_leave', payload: {}, ref: '1' });
  await one.next();
  await one.next();
  assert.equal(await joinTo(100), 'ok');
});

test('who does not read is dropped once much waits for it; the others lose nothing', async (t) => {
  const server = await startServer(t);
  const [deaf, sender, hearer] = [await member(t, server), await member(t, server), await member(t, server)];
  deaf.socket.pause();
  const title = 'x'.repeat(1024 * 1024);
  const kCount = 24;
  for (let number = 0; number < kCount; ++number) {
    sender.send(state({ number, title }));
    assert.equal((await hearer.next()).payload.payload.number, number);
  }
  deaf.socket.resume();
  await deaf.closed;
  assert.ok(deaf.messages.length < kCount, `${deaf.messages.length} messages`);
});

test('a peer that vanishes in the middle of a frame harms nobody', async (t) => {
  const server = await startServer(t);
  const [gone, one] = [await member(t, server), await member(t, server)];
  gone.socket._socket.write(Buffer.from([0x81, 0xfe, 0x10]));
  gone.socket._socket.destroy();
  await gone.closed;
  const other = await member(t, server);
  other.send(state({ running: true }));
  assert.equal((await one.next()).event, 'broadcast');
});
