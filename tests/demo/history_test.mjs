import assert from 'node:assert/strict';
import { test } from 'node:test';

// Days are the user's; this zone turned its clocks back on 25 October 2026.
process.env.TZ = 'Europe/Rome';
const { byProject, daysWithSessions, focusTime, lastDays, sessionsOfDay } =
  await import('../../demo/page/history.js');

const at = (day, hour, minute = 0, month = 10) => new Date(2026, month - 1, day, hour, minute).getTime();
const entry = (startedAt, minutes, projectTitle = '', isBreak = false) => ({
  isBreak,
  startedAt,
  endedAt: startedAt + minutes * 60000,
  projectTitle,
});

test('the zone of these tests really has the long day', () => {
  assert.equal((at(26, 0) - at(25, 0)) / 3600000, 25);
});

test('a session belongs to the day on which it began', () => {
  const late = entry(at(20, 23, 50), 25);
  const early = entry(at(21, 0, 0), 25);
  assert.deepEqual(sessionsOfDay([late, early], at(20, 12)), [late]);
  assert.deepEqual(sessionsOfDay([late, early], at(21, 12)), [early]);
});

test('breaks are no focus time', () => {
  assert.equal(focusTime([entry(at(20, 9), 25), entry(at(20, 10), 5, '', true)]), 25 * 60000);
});

test('the last days follow the calendar, also over a change of the clocks', () => {
  const onSunday = entry(at(25, 23, 30), 25);
  const days = lastDays([onSunday], at(27, 12), 4);
  assert.deepEqual(
    days.map(({ day }) => day),
    [at(24, 0), at(25, 0), at(26, 0), at(27, 0)],
  );
  assert.deepEqual(
    days.map(({ entries }) => entries),
    [[], [onSunday], [], []],
  );
});

test('the days that have sessions come newest first', () => {
  const first = entry(at(3, 9), 25);
  const second = entry(at(7, 9), 25);
  const third = entry(at(7, 10), 25);
  assert.deepEqual(daysWithSessions([first, second, third]), [
    { day: at(7, 0), entries: [second, third] },
    { day: at(3, 0), entries: [first] },
  ]);
});

test('projects are summed by title, the longest first', () => {
  const history = [
    entry(at(3, 9), 10, 'Sito'),
    entry(at(3, 10), 25, 'Tesi'),
    entry(at(4, 9), 20, 'Tesi'),
    entry(at(4, 10), 60, 'Sito', true),
  ];
  assert.deepEqual(byProject(history), [
    { projectTitle: 'Tesi', time: 45 * 60000, sessions: 2 },
    { projectTitle: 'Sito', time: 10 * 60000, sessions: 1 },
  ]);
});
