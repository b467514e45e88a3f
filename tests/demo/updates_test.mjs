import assert from 'node:assert/strict';
import { test } from 'node:test';

import { createDesktop } from '../../demo/page/desktop.js';
import { desktopThat, openSettings, setStage } from './stage.mjs';

const kState = { versione: '1.0', build: 7, automatico: true };
const kReleased = { esito: 'trovato', versione: '2.0', build: 8, note: 'Più veloce.' };

test('what runs is named, with the last update', async (t) => {
  const body = setStage(t);
  const cases = [
    [{}, 'Orvalle 1.0 (7)'],
    [{ ultimoQuando: '2026-03-02T12:00:00Z', ultimaVersione: '1.0' }, 'Orvalle 1.0 (7) Ultimo aggiornamento: alla 1.0, il 2 marzo 2026.'],
    [{ ultimoQuando: 'ieri', ultimaVersione: '1.0' }, 'Orvalle 1.0 (7)'],
  ];
  for (const [more, text] of cases) {
    await openSettings(body, desktopThat({ 'aggiornamenti-stato': { ...kState, ...more } }));
    assert.equal(
      body.find('section').text,
      `Aggiornamenti ${text} Cerca aggiornamenti Ricerca automatica All’avvio e ogni sei ore. Accesa Spegni`,
    );
  }
  await openSettings(body, desktopThat({ 'aggiornamenti-stato': '' }));
  assert.ok(body.find('output', 'Non si sa'));
});

test('what a search finds can be installed; what it does not find cannot', async (t) => {
  const body = setStage(t);
  let found;
  const desktop = desktopThat({ 'aggiornamenti-stato': kState, 'aggiornamenti-cerca': () => found });
  await openSettings(body, desktop);
  const search = body.find('button', 'Cerca aggiornamenti');
  for (const [answer, outcome, offered] of [
    [kReleased, 'C’è una versione nuova.', true],
    [{ ...kReleased, esito: 'aggiornato' }, 'Sei già aggiornato.', false],
    ['', 'Non riesco a controllare: riprova quando c’è rete.', false],
    [kReleased, 'C’è una versione nuova.', true],
  ]) {
    found = answer;
    await search.click();
    assert.ok(body.find('p', outcome), outcome);
    assert.equal(Boolean(body.find('button', 'Aggiorna e riavvia')), offered);
  }
  assert.ok(body.find('p', 'Più veloce. L’app si chiude e si riapre da sola.'));
  await body.find('button', 'Aggiorna e riavvia').click();
  assert.deepEqual(desktop.asked.at(-1), { tipo: 'aggiornamenti-installa' });
});

test('one search is made at a time, and the user sees it', async (t) => {
  const body = setStage(t);
  const desktop = desktopThat({ 'aggiornamenti-stato': kState, 'aggiornamenti-cerca': kReleased });
  await openSettings(body, desktop);
  const search = body.find('button', 'Cerca aggiornamenti');
  const clicks = [search.click(), search.click()];
  assert.ok(body.find('p', 'Cerco…'));
  await Promise.all(clicks);
  assert.equal(desktop.asked.filter(({ tipo }) => tipo === 'aggiornamenti-cerca').length, 1);
});

test('the search of the program itself is switched off and on', async (t) => {
  const body = setStage(t);
  const state = { ...kState };
  const desktop = desktopThat({
    'aggiornamenti-stato': () => state,
    'aggiornamenti-automatici': ({ acceso }) => void (state.automatico = acceso),
  });
  await openSettings(body, desktop);
  for (const [button, shown] of [['Spegni', 'Spenta'], ['Accendi', 'Accesa']]) {
    await body.find('button', button).click();
    assert.ok(body.find('output', shown));
    assert.equal(state.automatico, shown === 'Accesa');
  }
});

test('an ordinary browser has nothing about updates', async (t) => {
  const body = setStage(t);
  await openSettings(body, createDesktop({}, {}));
  assert.ok(body.find('output', 'Sei in un browser'));
  assert.equal(body.find('h2', 'Aggiornamenti'), null);
});
