// Keeps the state: in memory, in the browser's storage and in step with other windows of the same browser.

import { readState } from './session.js';

const kKey = 'orvalle';

/**
 * `storage` may refuse every call (storage switched off, quota reached); the state then lives as long as the
 * page.
 */
export function createStore(storage) {
  const listeners = new Set();
  let state = readState(stored());

  function stored() {
    try {
      return storage.getItem(kKey);
    } catch {
      return null;
    }
  }

  function adopt(next) {
    if (next === state) return;
    const previous = state;
    state = next;
    for (const listener of listeners) listener(state, previous);
  }

  return {
    get state() {
      return state;
    },
    /** Applies a change, a function from state to state; listeners hear of it if it returns another state. */
    update(change) {
      const next = change(state);
      if (next === state) return;
      try {
        storage.setItem(kKey, JSON.stringify(next));
      } catch {
        // Kept in memory only.
      }
      adopt(next);
    },
    /** Takes over what another window wrote; to be called when the browser reports it ("storage" event). */
    reload(key = kKey) {
      if (key === kKey || key === null) adopt(readState(stored()));
    },
    subscribe(listener) {
      listeners.add(listener);
    },
  };
}
