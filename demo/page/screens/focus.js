// The focus screen: the countdown with its controls, and the tasks beside it.

import { h, svg } from '../dom.js';
import { countdown, duration, inMinutes, timeOfDay } from '../format.js';
import { focusTime, sessionsOfDay } from '../history.js';
import { kLongestMinutes, kLongestTitle, timing } from '../session.js';
import { createTasks } from './tasks.js';

const kLengths = [15, 25, 45, 60];
const kRadius = 94;
const kAround = 2 * Math.PI * kRadius;

function button(id, label, action, attributes = {}) {
  return h('button', { id, type: 'button', ...attributes, on: { click: () => action() } }, label);
}

function createRing() {
  const circle = (name) => svg('circle', { class: name, cx: 100, cy: 100, r: kRadius });
  const progress = circle('percorso');
  const head = svg('g', {}, svg('circle', { class: 'testa', cx: 100, cy: 100 - kRadius, r: 4.5 }));
  const element = svg(
    'svg',
    { class: 'anello', viewBox: '0 0 200 200', 'aria-hidden': 'true' },
    circle('pista'),
    progress,
    head,
  );
  return {
    element,
    update(share) {
      const part = Math.min(Math.max(share, 0), 1);
      progress.setAttribute('stroke-dasharray', `${part * kAround} ${kAround}`);
      head.setAttribute('transform', `rotate(${part * 360} 100 100)`);
    },
  };
}

// Each character in a cell of its own: the digits stay in place whatever font the system has.
function showDigits(element, text) {
  if (element.textContent === text) return;
  element.style.setProperty('--caratteri', text.length);
  element.replaceChildren(
    ...[...text].map((character) =>
      h('span', { class: character === ':' ? 'due-punti' : null, 'aria-hidden': 'true' }, character),
    ),
  );
}

function createLengths(actions) {
  let current = 0;
  const choices = kLengths.map((minutes) => {
    const input = h('input', {
      type: 'radio',
      name: 'durata',
      value: minutes,
      'aria-label': inMinutes(minutes),
      on: { change: () => actions.setLength('focusMin', minutes) },
    });
    return { minutes, input, element: h('label', {}, input, h('span', {}, String(minutes))) };
  });
  const other = h('input', {
    id: 'minuti',
    type: 'number',
    min: 1,
    max: kLongestMinutes,
    step: 1,
    inputmode: 'numeric',
    placeholder: 'Altro',
    'aria-label': 'Altra durata in minuti',
    on: {
      input: () => actions.setLength('focusMin', other.value),
      blur: showOther,
      keydown: (event) => event.key === 'Enter' && actions.startFocus(),
    },
  });
  // Empty while one of the usual lengths is chosen; left alone while it is being typed into.
  function showOther() {
    other.value = kLengths.includes(current) ? '' : current;
  }

  const element = h(
    'fieldset',
    { class: 'durate' },
    h('legend', { class: 'nascosto' }, 'Durata del focus in minuti'),
    choices.map((choice) => choice.element),
    h('label', { class: 'altra' }, other, h('span', {}, 'min')),
  );
  return {
    element,
    update(minutes) {
      current = minutes;
      for (const choice of choices) choice.input.checked = choice.minutes === minutes;
      if (document.activeElement !== other) showOther();
    },
  };
}

function today(history, now) {
  const focus = sessionsOfDay(history, now).filter(({ isBreak }) => !isBreak);
  return focus.length ? `oggi ${duration(focusTime(focus))}` : 'la prima di oggi';
}

export function createScreen({ actions }) {
  const project = h('input', {
    id: 'progetto',
    class: 'progetto',
    type: 'text',
    maxlength: kLongestTitle,
    autocomplete: 'off',
    spellcheck: 'false',
    placeholder: 'A cosa lavori?',
    'aria-label': 'Titolo del progetto',
    on: {
      input: () => actions.setProject(project.value),
      keydown: (event) => event.key === 'Enter' && project.blur(),
    },
  });
  const ring = createRing();
  const kind = h('p', { class: 'tipo' });
  const digits = h('div', { id: 'countdown', class: 'cifre', role: 'timer' });
  const goal = h('p', { class: 'traguardo' });
  const lengths = createLengths(actions);
  const startButton = button('avvia', 'Avvia', actions.startFocus, { class: 'primario' });
  const breakButton = button('pausa', 'Pausa', actions.startBreak, { class: 'secondario' });
  const stopButton = button('ferma', 'Ferma', actions.stop, { class: 'primario' });
  const shortenButton = button('meno5', '−5 min', actions.shorten, {
    class: 'passo',
    'aria-label': 'Accorcia di 5 minuti',
  });
  const lengthenButton = button('piu5', '+5 min', actions.lengthen, {
    class: 'passo',
    'aria-label': 'Allunga di 5 minuti',
  });
  const timer = h(
    'section',
    { class: 'timer', 'aria-label': 'Sessione' },
    project,
    h('div', { class: 'quadrante' }, ring.element, h('div', { class: 'lettura' }, kind, digits, goal)),
    h('div', { class: 'tempi' }, lengths.element, shortenButton, lengthenButton),
    h('div', { class: 'comandi' }, stopButton, startButton, breakButton),
  );
  const tasks = createTasks(actions);

  function tick(state, now) {
    const running = timing(state, now);
    const over = running !== null && running.remainingMin < 0;
    timer.dataset.stato = running === null ? 'fermo' : over ? 'oltre' : running.isBreak ? 'pausa' : 'focus';
    const text = running ? countdown(running.remainingMin) : countdown(state.focusMin);
    showDigits(digits, text);
    ring.update(running ? running.elapsedMin / running.plannedMin : 0);
    kind.textContent = running === null ? 'Pronto' : running.isBreak ? 'Pausa' : 'Focus';
    goal.textContent =
      running === null
        ? today(state.history, now)
        : over
          ? 'oltre il traguardo'
          : `fino alle ${timeOfDay(running.endsAt)}`;
    const whole = running && Math.round(Math.abs(running.remainingMin));
    digits.setAttribute(
      'aria-label',
      running === null
        ? `Durata: ${inMinutes(state.focusMin)}`
        : `${inMinutes(whole)} ${over ? 'oltre' : 'al traguardo'}`,
    );
  }

  return {
    title: 'Focus',
    element: h(
      'div',
      { class: 'focus' },
      h('h1', { class: 'nascosto', tabindex: -1 }, 'Focus'),
      timer,
      tasks.element,
    ),
    tick,
    update(state, now) {
      const running = timing(state, now);
      const used = timer.contains(document.activeElement) ? document.activeElement : null;
      if (project.value !== state.projectTitle) project.value = state.projectTitle;
      lengths.element.hidden = running !== null;
      lengths.update(state.focusMin);
      startButton.hidden = running !== null && !running.isBreak;
      startButton.textContent = running ? 'Torna al focus' : 'Avvia';
      startButton.className = running ? 'secondario' : 'primario';
      breakButton.hidden = running !== null && running.isBreak;
      for (const control of [stopButton, shortenButton, lengthenButton]) control.hidden = running === null;
      // The control in use may just have gone: the keyboard goes on from the one that took its place.
      if (used && used.closest('[hidden]')) (running ? stopButton : startButton).focus();
      tasks.update(state.tasks);
      tick(state, now);
    },
  };
}
