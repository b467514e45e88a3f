// Screens made of what the state already holds: today, the calendar, the week, the projects, open tasks.

import { h } from '../dom.js';
import { counted, dayName, duration, timeOfDay, weekday } from '../format.js';
import { byProject, daysWithSessions, focusTime, lastDays, sessionsOfDay } from '../history.js';

const sessionName = (entry) => (entry.isBreak ? 'Pausa' : entry.projectTitle || 'Focus');

function sessionList(entries) {
  return h(
    'ul',
    { class: 'righe', role: 'list' },
    entries.map((entry) =>
      h(
        'li',
        { class: entry.isBreak ? 'di-pausa' : null },
        h('span', { class: 'ore' }, `${timeOfDay(entry.startedAt)} – ${timeOfDay(entry.endedAt)}`),
        h('span', { class: 'nome' }, sessionName(entry)),
        h('span', { class: 'durata' }, duration(entry.endedAt - entry.startedAt)),
      ),
    ),
  );
}

const nothing = (text) => h('p', { class: 'vuoto' }, text);
const kNothingYet = 'Qui compaiono le sessioni finite, da un minuto in su. Per ora non ce ne sono.';

/** A screen whose whole content follows from the state and the time. */
function derivedScreen(title, lead, content) {
  return () => {
    const body = h('div', {});
    const subtitle = h('p', { class: 'guida' });
    return {
      title,
      element: h('div', { class: 'pagina' }, h('h1', { tabindex: -1 }, title), subtitle, body),
      update(state, now) {
        subtitle.textContent = lead(state, now);
        body.replaceChildren(...content(state, now));
      },
    };
  };
}

export const todayScreen = derivedScreen(
  'Oggi',
  (state, now) => dayName(now),
  (state, now) => {
    const entries = sessionsOfDay(state.history, now);
    const focus = entries.filter(({ isBreak }) => !isBreak);
    const done = state.tasks.filter((task) => task.done).length;
    const figure = (value, label) => h('div', {}, h('dd', {}, value), h('dt', {}, label));
    return [
      h(
        'dl',
        { class: 'cifre-del-giorno' },
        figure(duration(focusTime(entries)), 'di focus'),
        figure(String(focus.length), focus.length === 1 ? 'sessione' : 'sessioni'),
        figure(`${done}/${state.tasks.length}`, 'task fatte'),
      ),
      entries.length
        ? sessionList(entries)
        : nothing('Oggi non hai ancora finito una sessione di almeno un minuto.'),
    ];
  },
);

export const calendarScreen = derivedScreen(
  'Calendario',
  () => 'Le sessioni finite, giorno per giorno.',
  (state) => {
    const days = daysWithSessions(state.history);
    if (!days.length) return [nothing(kNothingYet)];
    return days.map(({ day, entries }) =>
      h(
        'section',
        { class: 'giorno' },
        h('h2', {}, dayName(day), h('span', {}, duration(focusTime(entries)))),
        sessionList(entries),
      ),
    );
  },
);

export const reviewScreen = derivedScreen(
  'Review',
  () => 'Il tempo di focus degli ultimi sette giorni.',
  (state, now) => {
    const days = lastDays(state.history, now, 7).map(({ day, entries }) => ({
      day,
      time: focusTime(entries),
    }));
    const total = days.reduce((sum, { time }) => sum + time, 0);
    if (!total) return [nothing('Negli ultimi sette giorni non ci sono sessioni di focus.')];
    const longest = Math.max(...days.map(({ time }) => time));
    const bar = (time) => {
      const element = h('span', { class: 'barra', 'aria-hidden': 'true' });
      element.style.setProperty('--quota', time / longest);
      return element;
    };
    return [
      h('p', { class: 'totale' }, h('b', {}, duration(total)), ' in tutto'),
      h(
        'ol',
        { class: 'settimana' },
        days.map(({ day, time }) =>
          h(
            'li',
            {},
            h('span', { class: 'valore' }, time ? duration(time) : '–'),
            bar(time),
            h('span', {}, weekday(day)),
          ),
        ),
      ),
    ];
  },
);

export const projectsScreen = derivedScreen(
  'Progetti',
  () => 'Il tempo di focus di ogni titolo usato nelle sessioni.',
  (state) => {
    const projects = byProject(state.history);
    if (!projects.length) return [nothing(kNothingYet)];
    return [
      h(
        'ul',
        { class: 'righe', role: 'list' },
        projects.map(({ projectTitle, sessions, time }) =>
          h(
            'li',
            {},
            h('span', { class: 'nome' }, projectTitle || 'Senza titolo'),
            h('span', { class: 'ore' }, counted(sessions, 'sessione', 'sessioni')),
            h('span', { class: 'durata' }, duration(time)),
          ),
        ),
      ),
    ];
  },
);

export const sprintScreen = derivedScreen(
  'Sprint',
  () => 'Per ora qui trovi le task ancora aperte; si spuntano in Focus.',
  (state) => {
    const open = state.tasks.filter((task) => !task.done);
    if (open.length)
      return [
        h(
          'ul',
          { class: 'righe', role: 'list' },
          open.map(({ title }) => h('li', {}, h('span', { class: 'nome' }, title))),
        ),
      ];
    return [nothing(state.tasks.length ? 'Tutte le task sono fatte.' : 'Non c’è ancora nessuna task.')];
  },
);
