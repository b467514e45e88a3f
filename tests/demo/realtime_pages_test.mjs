// Pages that share a channel through the real server, each in a browser of its own.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import { createLink } from '../../demo/page/link.js';
import * as session from '../../demo/page/session.js';
import { createStore } from '../../demo/page/store.js';
import {
  createClient,
  eventually,
  joinChannel,
  kChannelKey,
  pause,
  startServer,
} from './realtime_server.mjs';

function openPage(t, server) {
  const store = createStore(null);
  const change = (what, ...values) => store.update((state) => what(state, ...values));
  const page = { store, change, joined: false };
  const link = createLink(createClient(t, server), kChannelKey, {
    commands: {
      stop: () => change(session.stop, Date.now()),
      plus5: () => change(session.lengthen),
      minus5: () => change(session.shorten),
      task: (id) => change(session.toggleTask, id),
    },
    snapshot: () => session.snapshot(store.state, Date.now(), server.url),
    onJoined: (joined) => (page.joined = joined),
  });
  store.subscribe(() => link.tell());
  return page;
}

test('each command is obeyed once by the page that runs the session, and then all is quiet', async (t) => {
  const server = await startServer(t);
  const remote = joinChannel(createClient(t, server, { vsn: '1.0.0' }));
  await remote.joined;
  const [busy, idle] = [openPage(t, server), openPage(t, server)];
  await eventually(() => busy.joined && idle.joined);
  busy.change(session.addTask, 'una', 'Leggere');
  busy.change(session.start, { isBreak: false, minutes: 25 }, Date.now());
  await eventually(() => remote.heard.length === 1);
  assert.equal(remote.heard[0][1].running, true);
  assert.deepEqual(remote.heard[0][1].tasks, [{ id: 'una', title: 'Leggere', done: false }]);

  for (const payload of [
    { command: 'plus5' },
    { command: 'task', id: 'una' },
    { command: 'minus5' },
    { command: 'stop' },
  ]) {
    await remote.channel.send({ type: 'broadcast', event: 'cmd', payload });
  }
  await eventually(() => remote.heard.length === 5);
  const states = remote.heard
    .slice(1)
    .map(([, { running, plannedMin, tasks }]) => [running, plannedMin, tasks[0].done]);
  assert.deepEqual(states, [
    [true, 30, false],
    [true, 30, true],
    [true, 25, true],
    [false, 0, true],
  ]);
  await pause(500);
  assert.equal(remote.heard.length, 5);
  assert.deepEqual(idle.store.state, session.emptyState());
});
