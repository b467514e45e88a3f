import assert from 'node:assert/strict';
import { test } from 'node:test';

import { createDesktop } from '../../demo/page/desktop.js';

function withBridge() {
  const posted = [];
  return {
    posted,
    webkit: { messageHandlers: { orvalle: { postMessage: (message) => posted.push(message) } } },
  };
}

test('in a browser without the bridge everything is allowed and nothing happens', async () => {
  for (const window of [{}, { webkit: {} }, { webkit: { messageHandlers: {} } }]) {
    const desktop = createDesktop(window, {});
    assert.equal(desktop.present, false);
    desktop.post({ running: false });
    desktop.request('tattile');
    assert.equal(await desktop.ask('stato-permesso'), null);
    assert.equal(await desktop.askJson('permessi-stato'), null);
  }
});

test('a state goes out as it is, a request with its kind', () => {
  const window = withBridge();
  const desktop = createDesktop(window, {});
  assert.equal(desktop.present, true);
  desktop.post({ running: true });
  desktop.request('tattile', { che: 'tocco' });
  assert.deepEqual(window.posted, [{ running: true }, { tipo: 'tattile', che: 'tocco' }]);
});

test('commands reach their function with their argument; unknown ones reach nothing', () => {
  const window = {};
  const obeyed = [];
  createDesktop(window, {
    stop: (argument) => obeyed.push(['stop', argument]),
    task: (id) => obeyed.push(['task', id]),
  });
  window.__orvalleComando('stop', null);
  window.__orvalleComando('task', "l'una");
  window.__orvalleComando('stop');
  window.__orvalleComando('toString', null);
  window.__orvalleComando('__proto__', 'x');
  assert.deepEqual(obeyed, [
    ['stop', null],
    ['task', "l'una"],
    ['stop', null],
  ]);
});

test('answers find their questions by number, in any order', async () => {
  const window = withBridge();
  const desktop = createDesktop(window, {});
  const first = desktop.ask('backup-elenco');
  const second = desktop.ask('backup', { nome: 'a.json' });
  assert.deepEqual(window.posted, [
    { tipo: 'backup-elenco', id: 1 },
    { tipo: 'backup', id: 2, nome: 'a.json' },
  ]);
  window.__orvalleRisposta(99, 'a nessuno');
  window.__orvalleRisposta(2, 'due');
  window.__orvalleRisposta(1, '');
  window.__orvalleRisposta(1, 'di nuovo');
  assert.deepEqual(await Promise.all([first, second]), ['', 'due']);
});

test('an answer that is a document is read, and one that is none is nothing', async () => {
  const window = withBridge();
  const desktop = createDesktop(window, {});
  for (const [text, read] of [['{"a":1}', { a: 1 }], ['', null], ['{', null]]) {
    const answer = desktop.askJson('attivita-giorno', { giorno: '2026-01-09' });
    const { id, ...asked } = window.posted.at(-1);
    assert.deepEqual(asked, { tipo: 'attivita-giorno', giorno: '2026-01-09' });
    window.__orvalleRisposta(id, text);
    assert.deepEqual(await answer, read);
  }
});

test('a question that is never answered ends with nothing', async () => {
  const window = withBridge();
  const desktop = createDesktop(window, {});
  assert.equal(await desktop.ask('stato-permesso', {}, 1), null);
  window.__orvalleRisposta(1, 'troppo tardi');
});
