import assert from 'node:assert/strict';
import { test } from 'node:test';

import { dayFrom, dayKey, readDay, stretches, totals } from '../../demo/page/activity.js';

const at = (time) => Date.parse(`2026-03-02T${time}Z`);
const block = (app, from, to, title) => ({ app, title: title ?? null, from: at(from), to: at(to) });

test('a day is named by its local date', () => {
  assert.equal(dayKey(new Date(2026, 2, 2, 23, 59)), '2026-03-02');
  assert.equal(dayKey(new Date(2026, 10, 12)), '2026-11-12');
});

test('days are counted on the calendar, over months and summer time', () => {
  assert.equal(dayKey(dayFrom(new Date(2026, 2, 1, 0, 30), -1)), '2026-02-28');
  assert.equal(dayKey(dayFrom(new Date(2026, 2, 29, 23, 30), 1)), '2026-03-30');
  assert.equal(dayKey(dayFrom(new Date(2026, 9, 25, 0, 30), -1)), '2026-10-24');
});

test('a day is read from the answer of the desktop', () => {
  const text = JSON.stringify([
    { app: 'Editor', titolo: 'lettera.txt', da: '2026-03-02T09:00:00Z', a: '2026-03-02T09:30:00Z' },
    { app: 'Posta', da: '2026-03-02T09:30:05Z', a: '2026-03-02T09:40:00Z' },
  ]);
  assert.deepEqual(readDay(text), [
    block('Editor', '09:00:00', '09:30:00', 'lettera.txt'),
    block('Posta', '09:30:05', '09:40:00'),
  ]);
});

test('what is no list of blocks is an empty day', () => {
  for (const text of ['', '{}', 'null', '[1,null,"x",{}]', '[{"app":"x","da":"mai","a":"mai"}]', null])
    assert.deepEqual(readDay(text), [], String(text));
});

test('times add up by application, longest first', () => {
  const day = [
    block('Posta', '09:00:00', '09:10:00'),
    block('Editor', '09:10:00', '09:40:00', 'a'),
    block('Posta', '09:40:00', '09:45:00'),
    block('Agenda', '10:00:00', '10:15:00'),
  ];
  assert.deepEqual(totals(day), [
    { app: 'Editor', time: 30 * 60000 },
    { app: 'Agenda', time: 15 * 60000 },
    { app: 'Posta', time: 15 * 60000 },
  ]);
});

test('neighbouring blocks of one application are one stretch with all its titles', () => {
  const day = [
    block('Browser', '09:00:00', '09:10:00', 'una pagina'),
    block('Browser', '09:10:05', '09:20:00', "un'altra"),
    block('Browser', '09:20:05', '09:25:00', 'una pagina'),
    block('Editor', '09:25:05', '09:30:00'),
    block('Browser', '09:30:05', '09:32:00'),
    block('Browser', '10:30:00', '10:32:00'),
  ];
  assert.deepEqual(
    stretches(day).map(({ app, titles, time }) => [app, titles, time / 1000]),
    [
      ['Browser', ['una pagina', "un'altra"], 600 + 595 + 295],
      ['Editor', [], 295],
      ['Browser', [], 115],
      ['Browser', [], 120],
    ],
  );
});
