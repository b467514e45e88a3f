// What the ended sessions add up to. Pure functions over the state's history. A session belongs to the day, in the
// user's time zone, on which it began.

const length = (entry) => entry.endedAt - entry.startedAt;
const startOfDay = (time) => new Date(time).setHours(0, 0, 0, 0);

function dayBefore(day) {
  const date = new Date(day);
  // By the calendar: a day may have 23 or 25 hours.
  return date.setDate(date.getDate() - 1);
}

export function focusTime(entries) {
  return entries.reduce((sum, entry) => (entry.isBreak ? sum : sum + length(entry)), 0);
}

export function sessionsOfDay(history, time) {
  const day = startOfDay(time);
  return history.filter((entry) => startOfDay(entry.startedAt) === day);
}

/** The last so many days up to today, oldest first, each with its sessions. */
export function lastDays(history, now, count) {
  const days = [];
  for (let day = startOfDay(now); days.length < count; day = dayBefore(day)) {
    days.unshift({ day, entries: sessionsOfDay(history, day) });
  }
  return days;
}

/** The days that have sessions, newest first. */
export function daysWithSessions(history) {
  const days = new Map();
  for (const entry of history) {
    const day = startOfDay(entry.startedAt);
    days.set(day, [...(days.get(day) ?? []), entry]);
  }
  return [...days].map(([day, entries]) => ({ day, entries })).sort((a, b) => b.day - a.day);
}

/** Focus time by project, the longest first; breaks do not count. */
export function byProject(history) {
  const projects = new Map();
  for (const entry of history.filter(({ isBreak }) => !isBreak)) {
    const project = projects.get(entry.projectTitle) ?? {
      projectTitle: entry.projectTitle,
      time: 0,
      sessions: 0,
    };
    project.time += length(entry);
    project.sessions += 1;
    projects.set(entry.projectTitle, project);
  }
  return [...projects.values()].sort((a, b) => b.time - a.time);
}
