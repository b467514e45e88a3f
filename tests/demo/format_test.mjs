import assert from 'node:assert/strict';
import { test } from 'node:test';

import { clock, countdown, duration, inMinutes } from '../../demo/page/format.js';

test('the clock rounds to seconds and shows hours only from the first one on', () => {
  for (const [minutes, text] of [
    [25, '25:00'],
    [24.2166667, '24:13'],
    [0.1166667, '0:07'],
    [65.15, '1:05:09'],
    [60, '1:00:00'],
    [59.995, '1:00:00'],
    [59.99, '59:59'],
    [0, '0:00'],
    [-3, '0:00'],
    [1440, '24:00:00'],
  ]) {
    assert.equal(clock(minutes), text, String(minutes));
  }
});

test('over time the countdown counts up behind a plus', () => {
  assert.equal(countdown(9.5), '9:30');
  assert.equal(countdown(0), '0:00');
  assert.equal(countdown(-0.4), '+0:24');
  assert.equal(countdown(-75), '+1:15:00');
});

test('lengths of time read naturally', () => {
  assert.deepEqual([0, 29999, 45 * 60000, 120 * 60000, 125 * 60000].map(duration), [
    '0 min',
    '0 min',
    '45 min',
    '2 h',
    '2 h 05 min',
  ]);
  assert.deepEqual([1, 25].map(inMinutes), ['1 minuto', '25 minuti']);
});
