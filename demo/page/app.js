// Puts the application together: state, screens, navigation, the bridge to the desktop and the passing of time.

import { createAwayNotice } from './away.js';
import { backUpDaily } from './backup.js';
import { createDesktop } from './desktop.js';
import { h, icon } from './dom.js';
import { countdown, inMinutes } from './format.js';
import { openLink } from './link.js';
import { createRouter } from './router.js';
import { lostScreen, screens } from './screens/index.js';
import * as session from './session.js';
import { createStore } from './store.js';

const kPostEveryMs = 5000;
const kBackUpLookMs = 60 * 60 * 1000;

const byId = (id) => document.getElementById(id);
const now = () => Date.now();

function storage() {
  try {
    return window.localStorage;
  } catch {
    // Refused by the browser's settings; the store copes with an absent one.
    return null;
  }
}

const store = createStore(storage());
const change = (what, ...values) => store.update((state) => what(state, ...values));
const newId = () =>
  [...crypto.getRandomValues(new Uint8Array(8))].map((byte) => byte.toString(16).padStart(2, '0')).join('');

const actions = {
  startFocus: (minutes = store.state.focusMin) => change(session.start, { isBreak: false, minutes }, now()),
  startBreak: () => change(session.start, { isBreak: true, minutes: store.state.breakMin }, now()),
  stop: () => change(session.stop, now()),
  lengthen: () => change(session.lengthen),
  shorten: () => change(session.shorten),
  setProject: (text) => change(session.setProject, text),
  setLength: (which, minutes) => change(session.setLength, which, minutes),
  addTask: (title) => change(session.addTask, newId(), title),
  toggleTask: (id) => change(session.toggleTask, id),
  removeTask: (id) => change(session.removeTask, id),
  clear: () => {
    if (window.confirm('Cancellare task, sessioni e tempi? Non si può annullare.'))
      change(session.emptyState);
  },
};

const away = createAwayNotice(byId('avviso'), () => actions.stop());

// What every desktop of the user may do, also over the live link.
const sessionCommands = {
  stop: () => actions.stop(),
  plus5: () => actions.lengthen(),
  minus5: () => actions.shorten(),
  task: (id) => actions.toggleTask(id),
};

// The desktop may be showing a session that runs elsewhere, and gives its commands to its own page all the same.
const orPassOn = ([word, obey]) => [
  word,
  (id) => (session.concerns(store.state, word, id) ? obey(id) : link.command(word, id)),
];

const desktop = createDesktop(window, {
  ...Object.fromEntries(Object.entries(sessionCommands).map(orPassOn)),
  subito: (minutes) => {
    router.go('/');
    actions.startFocus(minutes);
  },
  vai: (path) => router.go(path),
  inattivo: (seconds) => {
    if (store.state.session && Number(seconds) >= 60) away.show(Number(seconds));
  },
});

const link = openLink(window, {
  loadClient: async () => (await import('/vendor/realtime.js')).RealtimeClient,
  commands: sessionCommands,
  snapshot: () => snapshot(),
  onChange: () => screen?.update(store.state, now()),
});

// Navigation

const router = createRouter(window, showRoute);
let screen = null;

function buildNavigation() {
  byId('schermate').append(
    ...screens.map(({ path, title, symbol, group }) =>
      h(
        'li',
        { class: group ? 'gruppo' : null },
        h('a', { href: path, title, 'data-percorso': path }, icon(symbol), h('span', {}, title)),
      ),
    ),
  );
}

function showRoute(route) {
  const known = screens.find(({ path }) => path === route.path);
  const isFirst = screen === null;
  screen = (known?.create ?? lostScreen)({ actions, desktop, link, route });
  screen.update(store.state, now());
  byId('contenuto').replaceChildren(screen.element);
  byId('contenuto').scrollTop = 0;
  for (const link of byId('schermate').querySelectorAll('a')) {
    if (link.dataset.percorso === route.path) link.setAttribute('aria-current', 'page');
    else link.removeAttribute('aria-current');
  }
  // A screen reader announces the new screen; at the first load the browser does it.
  if (!isFirst) screen.element.querySelector('h1').focus({ preventScroll: true });
  tick();
}

// Time

let timer = 0;
let postedAt = 0;
let wasOver = false;

const snapshot = () => session.snapshot(store.state, now(), location.origin);

function post() {
  postedAt = now();
  desktop.post(snapshot());
  link.tell();
}

function showRunning(running) {
  const link = byId('in-corso');
  link.hidden = running === null || router.current.path === '/';
  // The desktop shows the countdown itself, and its window keeps its title.
  const page = `${screen.title} – Orvalle`;
  document.title = running && !desktop.present ? `${countdown(running.remainingMin)} · ${page}` : page;
  if (link.hidden) return;
  link.dataset.stato = running.remainingMin < 0 ? 'oltre' : running.isBreak ? 'pausa' : 'focus';
  link.querySelector('.tempo').textContent = countdown(running.remainingMin);
  link.querySelector('.nome').textContent = running.isBreak ? 'Pausa' : store.state.projectTitle || 'Focus';
}

/** Brings the display up to now and comes back when the countdown changes next. */
function tick() {
  clearTimeout(timer);
  const moment = now();
  const running = session.timing(store.state, moment);
  screen.tick?.(store.state, moment);
  showRunning(running);
  const over = running !== null && running.remainingMin < 0;
  if (over && !wasOver) {
    announce('Tempo finito: da ora sei oltre il traguardo.');
    desktop.request('notifica', {
      titolo: 'Tempo finito',
      corpo: 'Da ora sei oltre il traguardo.',
      tag: 'tempo-finito',
    });
  }
  wasOver = over;
  if (!running) return;
  // Half a second early rather than late: the timer runs once a second, and the wall clock may be set back.
  if (Math.abs(moment - postedAt) >= kPostEveryMs - 500) post();
  timer = setTimeout(tick, session.untilNextChange(store.state, moment));
}

// Changes

function announce(text) {
  byId('annuncio').textContent = text;
}

function describeChange(state, previous) {
  const started = state.session && state.session.startedAt !== previous.session?.startedAt;
  if (started) {
    return `${state.session.isBreak ? 'Pausa' : 'Sessione'} di ${inMinutes(state.session.plannedMin)} avviata.`;
  }
  if (previous.session && !state.session) return 'Sessione fermata.';
  if (state.session && state.session.plannedMin !== previous.session.plannedMin) {
    return `Durata: ${inMinutes(state.session.plannedMin)}.`;
  }
  return null;
}

function touchBack(state, previous) {
  if ((state.session?.startedAt ?? null) !== (previous.session?.startedAt ?? null))
    desktop.request('tattile');
  const wasDone = new Set(previous.tasks.filter(({ done }) => done).map(({ id }) => id));
  if (state.tasks.some(({ id, done }) => done && !wasDone.has(id)))
    desktop.request('tattile', { che: 'tocco' });
}

store.subscribe((state, previous) => {
  screen.update(state, now());
  if (!state.session) away.hide();
  const change = describeChange(state, previous);
  if (change) announce(change);
  post();
  touchBack(state, previous);
  tick();
});

// The page may have slept, or another window may have changed the state.
function wake() {
  screen.update(store.state, now());
  tick();
  post();
}

window.addEventListener('focus', wake);
window.addEventListener('pageshow', (event) => event.persisted && wake());
document.addEventListener('visibilitychange', () => !document.hidden && tick());
window.addEventListener('storage', (event) => store.reload(event.key));

buildNavigation();
post();
showRoute(router.current);

const backUpIfDue = () => backUpDaily(desktop, store.state);
backUpIfDue();
setInterval(backUpIfDue, kBackUpLookMs);
