import assert from 'node:assert/strict';
import { test } from 'node:test';

import { addTask, emptyState, toggleTask } from '../../demo/page/session.js';
import { createStore } from '../../demo/page/store.js';

function fakeStorage(text = null) {
  return {
    text,
    writes: 0,
    getItem() {
      return this.text;
    },
    setItem(key, value) {
      this.text = value;
      this.writes += 1;
    },
  };
}

const add = (id) => (state) => addTask(state, id, 'Una task');

test('a change is kept, told with the state before it, and found by the next page', () => {
  const storage = fakeStorage();
  const store = createStore(storage);
  const told = [];
  store.subscribe((state, previous) => told.push([previous.tasks.length, state.tasks.length]));
  store.update(add('a'));
  assert.deepEqual(told, [[0, 1]]);
  assert.deepEqual(createStore(storage).state, store.state);
});

test('a change that changes nothing is neither told nor written', () => {
  const storage = fakeStorage();
  const store = createStore(storage);
  store.subscribe(() => assert.fail('told'));
  store.update((state) => toggleTask(state, 'unknown'));
  assert.equal(storage.writes, 0);
});

test('what another window wrote is taken over and told', () => {
  const storage = fakeStorage();
  const store = createStore(storage);
  const other = createStore(storage);
  const told = [];
  store.subscribe((state) => told.push(state.tasks.length));
  other.update(add('a'));
  store.reload('something else');
  assert.deepEqual(told, []);
  store.reload('orvalle');
  assert.deepEqual(told, [1]);
  storage.text = null;
  store.reload(null);
  assert.deepEqual(store.state, emptyState());
});

test('without a storage that works the state lives as long as the page', () => {
  const refusing = {
    getItem() {
      throw new Error('switched off');
    },
    setItem() {
      throw new Error('full');
    },
  };
  for (const storage of [refusing, null]) {
    const store = createStore(storage);
    store.update(add('a'));
    assert.equal(store.state.tasks.length, 1);
  }
});
