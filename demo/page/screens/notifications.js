// The part of the settings on the desktop's notifications.

import { h } from '../dom.js';
import { button, part, row } from './rows.js';

const kLookAgainMs = 5000;
const kWords = { granted: 'Consentite', denied: 'Non consentite', default: 'Mai chieste' };
const kHints = {
  granted: 'Ti avvisano quando il tempo è finito.',
  denied: 'Il desktop non le mostra: si cambia nelle preferenze.',
  default: 'Per avvisarti quando il tempo è finito.',
};

export function notificationsPart({ desktop }) {
  let shown = null;
  const state = h('output', { id: 'stato-notifiche' }, '…');
  const hint = h('p', { class: 'nota', role: 'status' });
  const ask = button('Consenti…', async () => {
    show(await desktop.ask('permesso'));
    // The button may have gone, and the keyboard's place in the page with it.
    if (ask.hidden) (attempt.hidden ? preferences : attempt).focus();
  });
  const attempt = button('Prova', async () => {
    // Asked again, because the user may have been in the preferences a moment ago.
    const word = await desktop.ask('permesso');
    show(word);
    if (word !== 'granted') return;
    desktop.request('notifica', { titolo: 'Prova', corpo: 'Le notifiche di Orvalle arrivano.', tag: 'prova' });
    hint.textContent = 'Inviata: se non appare, vedi le preferenze.';
  });
  const preferences = button('Preferenze…', () => desktop.request('apri-preferenze'));

  function show(word) {
    if (word === shown) return;
    shown = word;
    state.textContent = kWords[word] ?? 'Non si sa';
    hint.textContent = kHints[word] ?? '';
    ask.hidden = word !== 'default';
    attempt.hidden = word !== 'granted';
  }
  const refresh = async () => show(await desktop.ask('stato-permesso'));

  ask.hidden = attempt.hidden = true;
  refresh();
  const element = part(
    'notifiche',
    'Notifiche',
    h('div', { class: 'voci' }, row('Permesso', hint, state, ask, attempt, preferences)),
  );
  const timer = setInterval(() => (element.isConnected ? refresh() : clearInterval(timer)), kLookAgainMs);
  return element;
}
