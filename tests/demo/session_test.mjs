import assert from 'node:assert/strict';
import { test } from 'node:test';

import { countdown } from '../../demo/page/format.js';
import * as session from '../../demo/page/session.js';

const kNow = Date.UTC(2026, 10, 21, 9, 0, 0);
const kMinute = 60000;

const running = (minutes = 25, isBreak = false) =>
  session.start(session.emptyState(), { isBreak, minutes }, kNow);
const remainingAt = (state, minutesLater) =>
  session.timing(state, kNow + minutesLater * kMinute).remainingMin;

test('a session is timed from the moment it began', () => {
  const state = running(25);
  const timing = session.timing(state, kNow + 9.5 * kMinute);
  assert.deepEqual(timing, {
    isBreak: false,
    elapsedMin: 9.5,
    plannedMin: 25,
    remainingMin: 15.5,
    endsAt: kNow + 25 * kMinute,
  });
});

test('past its end a session goes on with negative minutes', () => {
  assert.equal(remainingAt(running(25), 28), -3);
});

test('a clock set back before the start counts as no time passed', () => {
  assert.equal(remainingAt(running(25), -60), 25);
});

test('without a session there is no timing', () => {
  assert.equal(session.timing(session.emptyState(), kNow), null);
});

test('lengthening and shortening move the end by five minutes and undo each other', () => {
  assert.equal(remainingAt(session.lengthen(running(25)), 1), 29);
  assert.equal(remainingAt(session.shorten(running(25)), 1), 19);
  assert.equal(remainingAt(session.lengthen(session.shorten(running(25))), 1), 24);
});

test('shortening may bring the end before now, but not below one minute in all', () => {
  assert.equal(remainingAt(session.shorten(running(25)), 22), -2);
  assert.equal(session.shorten(running(3)).session.plannedMin, 1);
});

test('lengthening stops at a day', () => {
  assert.equal(
    session.lengthen(running(session.kLongestMinutes - 2)).session.plannedMin,
    session.kLongestMinutes,
  );
});

test('without a session lengthening, shortening and stopping change nothing', () => {
  const state = session.emptyState();
  for (const change of [session.lengthen, session.shorten, session.stop])
    assert.equal(change(state, kNow), state);
});

test('only whole minutes from one to a day are a length', () => {
  for (const [value, minutes] of [
    ['25', 25],
    [25, 25],
    [1, 1],
    ['1440', 1440],
    ['1441', null],
    ['0', null],
    ['-5', null],
    ['2.5', null],
    ['', null],
    [' ', null],
    ['abc', null],
    [null, null],
    [undefined, null],
    [NaN, null],
    [Infinity, null],
    ['1e9', null],
  ]) {
    assert.equal(session.minutesFrom(value), minutes, String(value));
  }
  const state = running(25);
  assert.equal(session.start(state, { isBreak: false, minutes: 'abc' }, kNow), state);
});

test('starting over a running session ends that one first', () => {
  const state = session.start(
    { ...running(25), projectTitle: 'Tesi' },
    { isBreak: true, minutes: 5 },
    kNow + 10 * kMinute,
  );
  assert.deepEqual(state.session, { isBreak: true, startedAt: kNow + 10 * kMinute, plannedMin: 5 });
  assert.deepEqual(state.history, [
    { isBreak: false, startedAt: kNow, endedAt: kNow + 10 * kMinute, projectTitle: 'Tesi' },
  ]);
});

test('a session of less than a minute leaves no trace', () => {
  assert.equal(session.stop(running(), kNow + kMinute - 1).history.length, 0);
  assert.equal(session.stop(running(), kNow + kMinute).history.length, 1);
  assert.equal(session.stop(running(), kNow - kMinute).history.length, 0);
});

test('the history keeps the last thousand sessions', () => {
  const history = Array.from({ length: 1000 }, (_, i) => ({
    isBreak: false,
    startedAt: kNow + i,
    endedAt: kNow + i,
    projectTitle: String(i),
  }));
  const stopped = session.stop({ ...running(), history }, kNow + kMinute);
  assert.equal(stopped.history.length, 1000);
  assert.equal(stopped.history[0].projectTitle, '1');
});

test('tasks are added at the end, trimmed, never empty', () => {
  let state = session.addTask(session.emptyState(), 'a', '  Prima  ');
  state = session.addTask(state, 'b', 'Seconda');
  assert.deepEqual(state.tasks, [
    { id: 'a', title: 'Prima', done: false },
    { id: 'b', title: 'Seconda', done: false },
  ]);
  assert.equal(session.addTask(state, 'c', ' \n '), state);
});

test('tasks are toggled and removed by id', () => {
  const state = session.addTask(session.addTask(session.emptyState(), 'a', 'Prima'), 'b', 'Seconda');
  const toggled = session.toggleTask(state, 'b');
  assert.deepEqual(
    toggled.tasks.map(({ done }) => done),
    [false, true],
  );
  assert.deepEqual(session.toggleTask(toggled, 'b'), state);
  assert.equal(session.toggleTask(state, 'z'), state);
  assert.deepEqual(
    session.removeTask(state, 'a').tasks.map(({ id }) => id),
    ['b'],
  );
});

test('long titles are cut between characters', () => {
  const state = session.setProject(session.emptyState(), '🙂'.repeat(session.kLongestTitle + 1));
  assert.equal(state.projectTitle, '🙂'.repeat(session.kLongestTitle));
});

test('a change leaves the state it came from as it was', () => {
  const state = session.addTask(running(), 'a', 'Prima');
  const before = structuredClone(state);
  session.toggleTask(state, 'a');
  session.removeTask(state, 'a');
  session.stop(state, kNow + kMinute);
  session.lengthen(state);
  assert.deepEqual(state, before);
});

test('the snapshot has exactly the members that the desktop knows', () => {
  const state = session.addTask(session.setProject(running(25), 'Tesi'), 'a', 'Prima');
  assert.deepEqual(session.snapshot(state, kNow + 10 * kMinute, 'http://localhost:4717'), {
    running: true,
    isBreak: false,
    elapsedMin: 10,
    remainingMin: 15,
    plannedMin: 25,
    projectTitle: 'Tesi',
    origin: 'http://localhost:4717',
    tasks: [{ id: 'a', title: 'Prima', done: false }],
  });
});

test('the snapshot without a session counts zero minutes', () => {
  assert.deepEqual(session.snapshot(session.emptyState(), kNow, 'x'), {
    running: false,
    isBreak: false,
    elapsedMin: 0,
    remainingMin: 0,
    plannedMin: 0,
    projectTitle: '',
    origin: 'x',
    tasks: [],
  });
});

test('a state survives being stored and read', () => {
  let state = session.setProject(running(25, true), 'Tesi');
  state = session.toggleTask(session.addTask(state, 'a', 'Prima'), 'a');
  state = {
    ...state,
    history: [{ isBreak: true, startedAt: kNow, endedAt: kNow + kMinute, projectTitle: '' }],
  };
  state = session.setLength(session.setLength(state, 'focusMin', '50'), 'breakMin', 10);
  assert.deepEqual(session.readState(JSON.stringify(state)), state);
});

test('what is damaged in a stored state takes its initial value, the rest stays', () => {
  for (const text of [null, '', 'x', 'null', '[]', '7', '"a"', '{"tasks":']) {
    assert.deepEqual(session.readState(text), session.emptyState(), String(text));
  }
  const read = session.readState(
    JSON.stringify({
      session: { isBreak: 'no', startedAt: kNow, plannedMin: 25 },
      projectTitle: 7,
      focusMin: -1,
      breakMin: 10,
      tasks: [
        null,
        3,
        { id: 1, title: 'x' },
        { id: 'a', title: 'Prima', done: 'sì', more: 1 },
        { id: 'a', title: 'Doppia' },
      ],
      history: [
        null,
        { isBreak: false, startedAt: 5, endedAt: 4, projectTitle: '' },
        { isBreak: false, startedAt: 4, endedAt: 5, projectTitle: 'x' },
      ],
    }),
  );
  assert.deepEqual(read, {
    ...session.emptyState(),
    breakMin: 10,
    tasks: [{ id: 'a', title: 'Prima', done: false }],
    history: [{ isBreak: false, startedAt: 4, endedAt: 5, projectTitle: 'x' }],
  });
  for (const broken of [
    { startedAt: null },
    { startedAt: 0 },
    { plannedMin: 0 },
    { plannedMin: 'x' },
    { plannedMin: 2.5 },
  ]) {
    const stored = { session: { isBreak: false, startedAt: kNow, plannedMin: 25, ...broken } };
    assert.equal(session.readState(JSON.stringify(stored)).session, null, JSON.stringify(broken));
  }
});

test('the wait for the next change ends just after the shown countdown has changed', () => {
  const state = running(25);
  const end = 25 * kMinute;
  const moments = Array.from({ length: 400 }, (_, i) => (i % 2 ? i * 3923 : end - 2000 + i * 10 + 3));
  for (const moment of moments) {
    const shownAfter = (wait) => countdown(session.timing(state, kNow + moment + wait).remainingMin);
    const wait = session.untilNextChange(state, kNow + moment);
    assert.notEqual(shownAfter(wait), shownAfter(0), `at ${moment} ms`);
    if (wait > 4) assert.equal(shownAfter(wait - 4), shownAfter(0), `at ${moment} ms`);
  }
});

test('a command concerns the page that runs the session, one for a task the page that has the task', () => {
  const idle = session.addTask(session.emptyState(), 'a', 'Una');
  const busy = session.start(idle, { isBreak: false, minutes: 25 }, 1000);
  for (const command of ['stop', 'plus5', 'minus5']) {
    assert.equal(session.concerns(idle, command, null), false);
    assert.equal(session.concerns(busy, command, null), true);
  }
  for (const state of [idle, busy]) {
    assert.equal(session.concerns(state, 'task', 'a'), true);
    assert.equal(session.concerns(state, 'task', 'b'), false);
  }
});
