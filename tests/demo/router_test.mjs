import assert from 'node:assert/strict';
import { test } from 'node:test';

import { createRouter, routeOf } from '../../demo/page/router.js';

const kOrigin = 'http://localhost:4717';

test('a route is a path of this application with its query', () => {
  const route = routeOf('/settings?sezione=google&esito=non%20ok', kOrigin);
  assert.equal(route.path, '/settings');
  assert.equal(route.text, '/settings?sezione=google&esito=non%20ok');
  assert.equal(route.query.get('esito'), 'non ok');
});

test('other sites, schemes and shapes are no routes', () => {
  for (const text of [
    'https://example.org/',
    '//example.org/',
    '/\\example.org/',
    'javascript:alert(1)',
    'sprint',
    '',
    null,
    undefined,
    7,
  ]) {
    assert.equal(routeOf(text, kOrigin), null, String(text));
  }
});

function fakeWindow(path) {
  const location = new URL(path, kOrigin);
  const listeners = {};
  const pushed = [];
  return {
    location,
    pushed,
    listeners,
    history: {
      pushState(state, title, text) {
        pushed.push(text);
        location.href = new URL(text, kOrigin).href;
      },
    },
    addEventListener: (name, listener) => {
      listeners[name] = listener;
    },
    document: {
      addEventListener: (name, listener) => {
        listeners[name] = listener;
      },
    },
  };
}

test('moving shows the screen and names it in the address, once', () => {
  const window = fakeWindow('/');
  const shown = [];
  const router = createRouter(window, (route) => shown.push(route.text));
  assert.equal(router.current.path, '/');
  router.go('/mappa');
  router.go('/mappa');
  router.go('https://example.org/');
  assert.deepEqual(shown, ['/mappa', '/mappa']);
  assert.deepEqual(window.pushed, ['/mappa']);
});

test('going back shows the screen of the address', () => {
  const window = fakeWindow('/today');
  const shown = [];
  createRouter(window, (route) => shown.push(route.text));
  window.listeners.popstate();
  assert.deepEqual(shown, ['/today']);
});

test('links to screens are followed here, with a modifier they are the browser’s', () => {
  const window = fakeWindow('/');
  const shown = [];
  createRouter(window, (route) => shown.push(route.text));
  const click = (more) => {
    let prevented = false;
    window.listeners.click({
      button: 0,
      target: { closest: () => ({ getAttribute: () => '/brain' }) },
      preventDefault: () => {
        prevented = true;
      },
      ...more,
    });
    return prevented;
  };
  assert.equal(click({}), true);
  for (const more of [
    { ctrlKey: true },
    { metaKey: true },
    { shiftKey: true },
    { altKey: true },
    { button: 1 },
    { defaultPrevented: true },
  ]) {
    assert.equal(click(more), false, JSON.stringify(more));
  }
  assert.deepEqual(shown, ['/brain']);
});
