import assert from 'node:assert/strict';
import { test } from 'node:test';

import { shortcuts } from '../../demo/page/shortcuts.js';

const keysOf = (isApple, menu, title) =>
  shortcuts(isApple)
    .find((group) => group.menu === menu)
    .items.find((item) => item.title === title).keys;

test('an upper-case key needs Shift, a lower-case one does not', () => {
  assert.deepEqual(keysOf(false, 'Sessione', 'Sessione da 25 minuti'), ['Ctrl', 'N']);
  assert.deepEqual(keysOf(false, 'Sessione', 'Nuova sessione…'), ['Ctrl', 'Maiusc', 'N']);
  assert.deepEqual(keysOf(false, 'Sessione', 'Ferma la sessione'), ['Ctrl', '.']);
});

test('on Apple systems the keys have their own signs', () => {
  assert.deepEqual(keysOf(true, 'Modifica', 'Ripeti'), ['⌘', '⇧', 'Z']);
});

test('every menu with shortcuts is there, in the order of the menu bar', () => {
  assert.deepEqual(
    shortcuts(false).map(({ menu, items }) => [menu, items.length]),
    [
      ['Orvalle', 2],
      ['Sessione', 6],
      ['Vai', 9],
      ['Modifica', 6],
      ['Finestra', 1],
      ['Aiuto', 1],
    ],
  );
});
