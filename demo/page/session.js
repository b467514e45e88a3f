// The state of the application and everything that may happen to it. Pure functions: the time is an argument,
// and every change returns a new state. Times are milliseconds since 1970; a session is kept as the moment it
// began, never as a count, so that it stays right while the page sleeps or is closed.

export const kMinute = 60000;
export const kLongestMinutes = 24 * 60;
export const kLongestTitle = 200;
const kStep = 5;
const kKeptSessions = 1000;

export function emptyState() {
  return { session: null, projectTitle: '', focusMin: 25, breakMin: 5, tasks: [], history: [] };
}

/** A whole number of minutes that a session may last, from a number or a text; null when it is none. */
export function minutesFrom(value) {
  const number = typeof value === 'string' && value.trim() === '' ? NaN : Number(value);
  return Number.isInteger(number) && number >= 1 && number <= kLongestMinutes ? number : null;
}

// Splits by code points, so that no half of an emoji remains.
const title = (text) => [...text].slice(0, kLongestTitle).join('');
const isTime = (value) => Number.isFinite(value) && value > 0;

function readSession(value) {
  const plannedMin = minutesFrom(value?.plannedMin);
  const valid = plannedMin !== null && typeof value.isBreak === 'boolean' && isTime(value.startedAt);
  return valid ? { isBreak: value.isBreak, startedAt: value.startedAt, plannedMin } : null;
}

function readTasks(list) {
  const tasks = new Map();
  for (const task of Array.isArray(list) ? list : []) {
    if (
      task &&
      typeof task.id === 'string' &&
      task.id &&
      typeof task.title === 'string' &&
      !tasks.has(task.id)
    ) {
      tasks.set(task.id, { id: task.id, title: title(task.title), done: task.done === true });
    }
  }
  return [...tasks.values()];
}

function readHistory(list) {
  const valid = (entry) =>
    entry &&
    typeof entry.isBreak === 'boolean' &&
    isTime(entry.startedAt) &&
    isTime(entry.endedAt) &&
    entry.endedAt >= entry.startedAt &&
    typeof entry.projectTitle === 'string';
  const copy = ({ isBreak, startedAt, endedAt, projectTitle }) => ({
    isBreak,
    startedAt,
    endedAt,
    projectTitle,
  });
  return (Array.isArray(list) ? list : []).filter(valid).map(copy).slice(-kKeptSessions);
}

/** The state from its stored text. Whatever is missing or damaged in it takes its initial value. */
export function readState(text) {
  let stored = null;
  try {
    stored = JSON.parse(text);
  } catch {
    // Not ours, or cut short: as good as absent.
  }
  const initial = emptyState();
  if (typeof stored !== 'object' || stored === null) return initial;
  return {
    session: readSession(stored.session),
    projectTitle: typeof stored.projectTitle === 'string' ? title(stored.projectTitle) : initial.projectTitle,
    focusMin: minutesFrom(stored.focusMin) ?? initial.focusMin,
    breakMin: minutesFrom(stored.breakMin) ?? initial.breakMin,
    tasks: readTasks(stored.tasks),
    history: readHistory(stored.history),
  };
}

/**
 * Starts a focus session or a break of so many minutes; a running one ends first. Unusable minutes change
 * nothing.
 */
export function start(state, { isBreak, minutes }, now) {
  const plannedMin = minutesFrom(minutes);
  if (plannedMin === null) return state;
  return { ...stop(state, now), session: { isBreak, startedAt: now, plannedMin } };
}

/** Ends the running session. One of less than a minute leaves no trace in the history. */
export function stop(state, now) {
  const { session, history, projectTitle } = state;
  if (!session) return state;
  const { isBreak, startedAt } = session;
  const counts = now - startedAt >= kMinute;
  return {
    ...state,
    session: null,
    history: counts
      ? [...history, { isBreak, startedAt, endedAt: now, projectTitle }].slice(-kKeptSessions)
      : history,
  };
}

function extend(state, minutes) {
  if (!state.session) return state;
  const plannedMin = Math.min(Math.max(state.session.plannedMin + minutes, 1), kLongestMinutes);
  return { ...state, session: { ...state.session, plannedMin } };
}

export const lengthen = (state) => extend(state, kStep);
/** May bring the end before now: the session is then over time, and lengthening takes that back. */
export const shorten = (state) => extend(state, -kStep);

export function setProject(state, text) {
  return { ...state, projectTitle: title(text) };
}

/** Sets how long the next sessions last, "focusMin" or "breakMin". */
export function setLength(state, which, value) {
  const minutes = minutesFrom(value);
  return minutes === null ? state : { ...state, [which]: minutes };
}

export function addTask(state, id, text) {
  const name = title(text.trim());
  return name ? { ...state, tasks: [...state.tasks, { id, title: name, done: false }] } : state;
}

export function toggleTask(state, id) {
  if (!state.tasks.some((task) => task.id === id)) return state;
  return {
    ...state,
    tasks: state.tasks.map((task) => (task.id === id ? { ...task, done: !task.done } : task)),
  };
}

export function removeTask(state, id) {
  return { ...state, tasks: state.tasks.filter((task) => task.id !== id) };
}

/** Whether a command is about the session or the tasks of this state, and not about somebody else's. */
export function concerns(state, command, id) {
  return command === 'task' ? state.tasks.some((task) => task.id === id) : state.session !== null;
}

/** The running session in minutes at a moment; null without one. A clock set back counts as no time. */
export function timing(state, now) {
  const { session } = state;
  if (!session) return null;
  const elapsedMin = Math.max(0, now - session.startedAt) / kMinute;
  return {
    isBreak: session.isBreak,
    elapsedMin,
    plannedMin: session.plannedMin,
    remainingMin: session.plannedMin - elapsedMin,
    endsAt: session.startedAt + session.plannedMin * kMinute,
  };
}

/** Milliseconds until the shown countdown, which is rounded to whole seconds, has changed next. */
export function untilNextChange(state, now) {
  const remaining = timing(state, now).remainingMin * kMinute;
  // The digits change at the half seconds, the sign at the end.
  const untilDigits = (((remaining - 500) % 1000) + 1000) % 1000;
  const untilSign = remaining > 0 ? remaining : Infinity;
  // Just after that moment, so that a timer never comes a hair too early.
  return Math.floor(Math.min(untilDigits, untilSign)) + 2;
}

/** The session as the desktop wants it. */
export function snapshot(state, now, origin) {
  const running = timing(state, now);
  return {
    running: running !== null,
    isBreak: running?.isBreak ?? false,
    elapsedMin: running?.elapsedMin ?? 0,
    remainingMin: running?.remainingMin ?? 0,
    plannedMin: running?.plannedMin ?? 0,
    projectTitle: state.projectTitle,
    origin,
    tasks: state.tasks.map(({ id, title: name, done }) => ({ id, title: name, done })),
  };
}
