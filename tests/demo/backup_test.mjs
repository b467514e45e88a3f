import assert from 'node:assert/strict';
import { test } from 'node:test';

import { backUp, backUpDaily, backupName, backupText, isDue, readBackups } from '../../demo/page/backup.js';
import { emptyState } from '../../demo/page/session.js';

const kMoment = new Date(2026, 0, 9, 7, 5, 3);

/** A desktop that answers what it is told to and remembers what it was asked. */
function desktopThat(answers) {
  const asked = [];
  return { asked, ask: async (kind, fields = {}) => (asked.push([kind, fields]), answers[kind] ?? null) };
}

test('names of backups sort by time', () => {
  assert.equal(backupName(kMoment), '2026-01-09-070503.json');
  assert.ok(backupName(kMoment) < backupName(new Date(2026, 0, 10, 0, 0, 0)));
  assert.ok(backupName(kMoment) < backupName(new Date(2026, 9, 1, 0, 0, 0)));
});

test('a backup holds the whole state', () => {
  const state = { tasks: [{ id: 'a', title: '"è"', done: true }] };
  assert.deepEqual(JSON.parse(backupText(state)).stato, state);
});

const listed = (...names) => names.map((nome) => ({ nome, peso: 2, quando: '2026-01-09T00:00:00Z' }));

test('a backup is due when none is of this day', () => {
  assert.equal(isDue(listed('2026-01-09-000000.json', '2026-01-08-235959.json'), kMoment), false);
  assert.equal(isDue(listed('2026-01-08-235959.json'), kMoment), true);
  assert.equal(isDue([], kMoment), true);
});

test('names that are greater than any day do not make a backup due', () => {
  const today = '2026-01-09-000000.json';
  assert.equal(isDue(listed('zzz.json', today), kMoment), false);
  assert.equal(isDue(listed('2031-05-01-000000.json', today, 'altro.json'), kMoment), false);
  assert.equal(isDue(listed('zzz.json', '2026-01-08-235959.json'), kMoment), true);
});

test('a backup went well when the desktop tells where it is', async () => {
  const desktop = desktopThat({ backup: '/tmp/x.json' });
  assert.equal(await backUp(desktop, {}, kMoment), true);
  assert.equal(desktop.asked[0][1].nome, '2026-01-09-070503.json');
  assert.equal(await backUp(desktopThat({ backup: '' }), {}, kMoment), false);
  assert.equal(await backUp(desktopThat({}), {}, kMoment), false);
});

test('the first backup of the day is made once, and none without a desktop', async () => {
  const first = desktopThat({ 'backup-elenco': '[]', backup: '/tmp/x.json' });
  assert.equal(await backUpDaily(first, {}, kMoment), true);
  const later = desktopThat({ 'backup-elenco': JSON.stringify(listed('zzz.json', '2026-01-09-000000.json')) });
  assert.equal(await backUpDaily(later, {}, kMoment), false);
  assert.equal(later.asked.length, 1);
  const none = desktopThat({});
  assert.equal(await backUpDaily(none, {}, kMoment), false);
  assert.equal(none.asked.length, 1);
});

test('a state that holds nothing yet is not backed up by itself', async () => {
  const desktop = desktopThat({ 'backup-elenco': '[]', backup: '/tmp/x.json' });
  assert.equal(await backUpDaily(desktop, emptyState(), kMoment), false);
  assert.equal(await backUpDaily(desktop, { ...emptyState(), projectTitle: 'x' }, kMoment), true);
});

test('what is no list is an empty one', () => {
  for (const text of [null, '', '{', '{}', 'null', '5']) assert.deepEqual(readBackups(text), []);
  assert.deepEqual(readBackups('[{"nome":"a.json"}]'), [{ nome: 'a.json' }]);
});
