// The part of the settings on updates of the desktop program.

import { h } from '../dom.js';
import { longDate } from '../format.js';
import { button, part, row } from './rows.js';

// A server that is far away may take longer than the desktop itself does for an answer.
const kSearchWithinMs = 60000;

function lastUpdate({ ultimoQuando, ultimaVersione }) {
  const moment = new Date(ultimoQuando ?? NaN);
  return Number.isNaN(moment.getTime()) ? '' : `Ultimo aggiornamento: alla ${ultimaVersione}, il ${longDate(moment)}.`;
}

export function updatesPart({ desktop }) {
  let state = null;
  let searching = false;
  const version = h('div', {}, 'Orvalle');
  const outcome = h('p', { class: 'nota', role: 'status' });
  const automatic = h('output', { id: 'aggiornamenti-da-soli' }, '…');
  const power = button('…', async () => {
    desktop.request('aggiornamenti-automatici', { acceso: !state?.automatico });
    await refresh();
  });
  const found = h('div', {});
  const note = h('p', { class: 'nota' });
  // From here on the desktop shows how far it is, and what went wrong.
  const install = button('Aggiorna e riavvia', () => desktop.request('aggiornamenti-installa'), 'primario');
  const offer = row(found, note, install);

  async function search() {
    if (searching) return;
    searching = true;
    outcome.textContent = 'Cerco…';
    const release = await desktop.askJson('aggiornamenti-cerca', {}, kSearchWithinMs);
    searching = false;
    if (release?.esito === 'trovato') {
      outcome.textContent = 'C’è una versione nuova.';
      found.textContent = `Orvalle ${release.versione}`;
      note.textContent = [release.note, 'L’app si chiude e si riapre da sola.'].filter(Boolean).join(' ');
    } else {
      outcome.textContent = release ? 'Sei già aggiornato.' : 'Non riesco a controllare: riprova quando c’è rete.';
    }
    offer.hidden = release?.esito !== 'trovato';
  }

  async function refresh() {
    state = await desktop.askJson('aggiornamenti-stato');
    version.textContent = state ? `Orvalle ${state.versione} (${state.build})` : 'Orvalle';
    automatic.textContent = !state ? 'Non si sa' : state.automatico ? 'Accesa' : 'Spenta';
    power.textContent = state?.automatico ? 'Spegni' : 'Accendi';
    power.disabled = !state;
    if (state && !outcome.textContent) outcome.textContent = lastUpdate(state);
  }

  offer.hidden = true;
  refresh();
  return part(
    'aggiornamenti',
    'Aggiornamenti',
    h(
      'div',
      { class: 'voci' },
      row(version, outcome, button('Cerca aggiornamenti', search)),
      offer,
      row('Ricerca automatica', 'All’avvio e ogni sei ore.', automatic, power),
    ),
  );
}
