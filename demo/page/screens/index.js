// Every route of the application with its place in the navigation and its screen.

import { h } from '../dom.js';
import { createScreen as focusScreen } from './focus.js';
import { calendarScreen, projectsScreen, reviewScreen, sprintScreen, todayScreen } from './journal.js';
import { plainScreen } from './plain.js';
import { createScreen as settingsScreen } from './settings.js';

const plain = (path, title, symbol, promise) => ({
  path,
  title,
  symbol,
  create: plainScreen(title, symbol, promise),
});

/** In the order of the navigation; a new group begins where `group` is set. */
export const screens = [
  { path: '/', title: 'Focus', symbol: 'focus', create: focusScreen },
  { path: '/sprint', title: 'Sprint', symbol: 'sprint', create: sprintScreen },
  { path: '/calendar', title: 'Calendario', symbol: 'calendario', create: calendarScreen },
  plain('/mappa', 'Mappa', 'mappa', 'Qui vedrai come si collegano obiettivi, progetti e task.'),
  plain('/brain', 'Brain', 'brain', 'Qui raccoglierai note e idee, e le ritroverai.'),
  { path: '/projects', title: 'Progetti', symbol: 'progetti', create: projectsScreen },
  plain('/goals', 'Obiettivi', 'obiettivi', 'Qui scriverai i tuoi obiettivi e vedrai quanto manca.'),
  plain('/inbox', 'Inbox', 'inbox', 'Qui arriverà quello che annoti al volo, in attesa di un posto.'),
  { path: '/today', title: 'Oggi', symbol: 'oggi', create: todayScreen },
  { path: '/review', title: 'Review', symbol: 'review', create: reviewScreen, group: true },
  plain(
    '/sunday',
    'Reset della domenica',
    'reset',
    'Qui chiuderai la settimana e preparerai la prossima, un passo alla volta.',
  ),
  plain('/challenge', 'Sfida', 'sfida', 'Qui sceglierai una sfida e segnerai i giorni in cui la mantieni.'),
  plain('/org', 'Organizzazione', 'organizzazione', 'Qui darai un ordine ad aree, progetti e impegni.'),
  { path: '/settings', title: 'Impostazioni', symbol: 'impostazioni', create: settingsScreen, group: true },
];

export const lostScreen = () => ({
  title: 'Schermata non trovata',
  element: h(
    'div',
    { class: 'pagina in-arrivo' },
    h('h1', { tabindex: -1 }, 'Schermata non trovata'),
    h('p', {}, 'A questo indirizzo non c’è nulla.'),
    h('p', {}, h('a', { href: '/' }, 'Vai al focus')),
  ),
  update() {},
});
