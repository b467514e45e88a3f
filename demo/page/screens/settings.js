// The settings: general ones, pairing, the keyboard shortcuts and the return from connecting a Google account.

import { h } from '../dom.js';
import { kLongestMinutes } from '../session.js';
import { shortcuts } from '../shortcuts.js';
import { activitySection } from './activity.js';
import { backupSection } from './backup.js';
import { notificationsPart } from './notifications.js';
import { pairingSection } from './pairing.js';
import { permissionsSection } from './permissions.js';
import { button, row } from './rows.js';
import { updatesPart } from './updates.js';

function general({ actions, desktop }) {
  const minutes = h('input', {
    id: 'minuti-pausa',
    type: 'number',
    min: 1,
    max: kLongestMinutes,
    inputmode: 'numeric',
    on: { input: () => actions.setLength('breakMin', minutes.value) },
  });
  const access = h('output', { id: 'accesso' }, '…');
  fetch('/api/io', { cache: 'no-store' })
    .then((answer) => answer.json())
    .then(({ accesso }) => {
      access.textContent = accesso ? 'Accesso fatto' : 'Senza accesso';
    })
    .catch(() => {
      access.textContent = 'Il server non risponde';
    });

  const rows = h(
    'div',
    { class: 'voci' },
    row(
      h('label', { for: 'minuti-pausa' }, 'Durata della pausa'),
      'In minuti, per le prossime pause.',
      minutes,
    ),
    row('Accesso', 'Vale per questa finestra.', access),
    row(
      'App desktop',
      null,
      h('output', { id: 'ponte' }, desktop.present ? 'Collegata' : 'Sei in un browser'),
    ),
    row(
      'Dati',
      'Task, sessioni e tempi stanno solo su questo computer.',
      button('Cancella tutto', () => actions.clear()),
    ),
  );

  if (desktop.present && location.protocol === 'https:') {
    rows.append(
      row(
        'Browser',
        'Apre Orvalle anche nel tuo browser.',
        button('Apri nel browser', () => desktop.request('apri-fuori', { url: location.origin + '/' })),
      ),
    );
  }

  return {
    element: h('div', {}, rows, desktop.present ? updatesPart({ desktop }) : null),
    update(state) {
      if (Number(minutes.value) !== state.breakMin && document.activeElement !== minutes)
        minutes.value = state.breakMin;
    },
  };
}

function alerts(context) {
  const pairing = pairingSection(context);
  return {
    element: h('div', {}, context.desktop.present ? notificationsPart(context) : null, pairing.element),
    update: pairing.update,
  };
}

function shortcutList() {
  const isApple = /Mac|iPhone|iPad/.test(navigator.platform);
  return h(
    'div',
    { id: 'scorciatoie', class: 'scorciatoie' },
    shortcuts(isApple).map(({ menu, items }) =>
      h(
        'section',
        {},
        h('h2', {}, menu),
        h(
          'dl',
          {},
          items.map(({ title, keys }) =>
            h(
              'div',
              {},
              h('dt', {}, title),
              h(
                'dd',
                {},
                keys.map((key) => h('kbd', {}, key)),
              ),
            ),
          ),
        ),
      ),
    ),
  );
}

function google(outcome) {
  const text =
    outcome === null
      ? 'Da questa finestra non è ancora stato collegato nessun account Google.'
      : outcome === 'ok'
        ? 'Il browser riferisce che l’account Google è stato collegato.'
        : `Il browser riferisce che l’account Google non è stato collegato (esito: ${outcome}).`;
  return h(
    'div',
    { id: 'google', class: 'voci' },
    h('p', { id: 'esito-google', class: outcome === 'ok' ? 'riuscito' : null }, text),
    h('p', { class: 'nota' }, 'Questa versione non usa ancora il calendario di Google.'),
  );
}

const sections = [
  { name: null, label: 'Generali', make: general },
  { name: 'avvisi', label: 'Avvisi', make: alerts },
  { name: 'attivita', label: 'Attività', make: activitySection },
  { name: 'backup', label: 'Backup', make: backupSection },
  { name: 'permessi', label: 'Permessi', make: permissionsSection },
  { name: 'scorciatoie', label: 'Scorciatoie', make: () => ({ element: shortcutList() }) },
  { name: 'google', label: 'Google', make: ({ route }) => ({ element: google(route.query.get('esito')) }) },
];

export function createScreen(context) {
  const wanted = context.route.query.get('sezione');
  const current = sections.find(({ name }) => name === wanted) ?? sections[0];
  const content = current.make(context);
  return {
    title: 'Impostazioni',
    element: h(
      'div',
      { class: 'pagina' },
      h('h1', { tabindex: -1 }, 'Impostazioni'),
      h(
        'nav',
        { class: 'linguette', 'aria-label': 'Sezioni delle impostazioni' },
        sections.map((section) =>
          h(
            'a',
            {
              href: section.name ? `/settings?sezione=${section.name}` : '/settings',
              'aria-current': section === current ? 'page' : null,
            },
            section.label,
          ),
        ),
      ),
      content.element,
    ),
    update(state) {
      content.update?.(state);
    },
  };
}
