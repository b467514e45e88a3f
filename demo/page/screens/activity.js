// The settings' section on the desktop's activity diary: turning it on, titles, its folder, and the day as a timeline.

import { dayFrom, dayKey, readDay, stretches, totals } from '../activity.js';
import { h } from '../dom.js';
import { dayName, duration, timeOfDay } from '../format.js';
import { button, row } from './rows.js';

const kLookAgainMs = 15000;

// Lists without marks are none to assistive technologies, unless they say so.
function totalsList(blocks) {
  const list = totals(blocks);
  const longest = list[0].time || 1;
  return h(
    'ul',
    { class: 'totali', role: 'list', 'aria-label': 'Tempo per applicazione' },
    list.map(({ app, time }) => {
      const bar = h('span', { class: 'quota', 'aria-hidden': 'true' });
      bar.style.setProperty('--quota', time / longest);
      return h('li', {}, h('span', { class: 'nome' }, app), bar, h('span', { class: 'durata' }, duration(time)));
    }),
  );
}

function timeline(blocks) {
  return h(
    'ol',
    { class: 'righe cronologia', role: 'list', 'aria-label': 'La giornata' },
    stretches(blocks).map(({ app, titles, from, to, time }) =>
      h(
        'li',
        {},
        h('span', { class: 'ore' }, `${timeOfDay(from)} – ${timeOfDay(to)}`),
        h('span', { class: 'nome' }, app, titles.length ? h('small', {}, titles.join(' · ')) : null),
        h('span', { class: 'durata' }, duration(time)),
      ),
    ),
  );
}

export function activitySection({ desktop }) {
  if (!desktop.present) {
    return {
      element: h('p', { class: 'vuoto' }, 'Il diario delle attività c’è solo nell’app desktop.'),
    };
  }

  let state = null;
  let day = dayFrom(new Date(), 0);
  let shown = '';

  const power = button('…', async () => {
    desktop.request('attivita-accendi', { acceso: !state?.acceso });
    await refresh();
  });
  const titles = h('p', { class: 'nota' });
  const folder = h('p', { class: 'nota posto' });
  const date = h('h2', {});
  const next = button('Giorno dopo', () => go(1));
  const content = h('div', { 'aria-live': 'polite' });

  async function refresh() {
    state = await desktop.askJson('attivita-stato');
    power.textContent = state?.acceso ? 'Spegni' : 'Accendi';
    power.disabled = !state;
    titles.textContent = state?.titoli ? 'Consentiti' : 'Non consentiti: il diario annota solo le applicazioni.';
    folder.textContent = state?.cartella ?? '';
    await showDay();
  }

  async function showDay() {
    const wanted = dayKey(day);
    const text = await desktop.ask('attivita-giorno', { giorno: wanted });
    // The user may have gone on to another day meanwhile.
    if (wanted !== dayKey(day)) return;
    date.textContent = dayName(day);
    next.disabled = wanted >= dayKey(new Date());
    // What looks the same stays, with the reader's place in it.
    if (shown === wanted + text) return;
    shown = wanted + text;
    const blocks = readDay(text);
    content.replaceChildren(
      ...(blocks.length
        ? [totalsList(blocks), timeline(blocks)]
        : [h('p', { class: 'vuoto' }, 'In questo giorno il diario non ha annotato nulla.')]),
    );
  }

  function go(days) {
    day = dayFrom(day, days);
    showDay();
  }

  const element = h(
    'div',
    { id: 'attivita' },
    h(
      'div',
      { class: 'voci' },
      row('Diario delle attività', 'Annota quale applicazione hai davanti, da un minuto in su.', power),
      row('Titoli delle finestre', titles, button('Scegli…', () => desktop.request('attivita-titoli'))),
      row('Cartella', folder, button('Apri', () => desktop.request('attivita-cartella'))),
    ),
    h(
      'div',
      { class: 'giorno-del-diario' },
      date,
      button('Giorno prima', () => go(-1)),
      next,
    ),
    content,
  );
  refresh();
  const timer = setInterval(() => (element.isConnected ? refresh() : clearInterval(timer)), kLookAgainMs);
  return { element };
}
