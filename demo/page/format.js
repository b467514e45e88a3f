// Texts made of numbers and times. Pure functions.

const clockFormat = new Intl.DateTimeFormat('it-IT', { hour: '2-digit', minute: '2-digit' });
const dayFormat = new Intl.DateTimeFormat('it-IT', { weekday: 'long', day: 'numeric', month: 'long' });
const dateFormat = new Intl.DateTimeFormat('it-IT', { dateStyle: 'long' });
const weekdayFormat = new Intl.DateTimeFormat('it-IT', { weekday: 'short' });

/** Minutes as "24:13" or, from an hour on, "1:05:09". Rounds to whole seconds; negative values print as zero. */
export function clock(minutes) {
  const seconds = Math.max(0, Math.round(minutes * 60));
  const two = (n) => String(n).padStart(2, '0');
  const rest = `${two(seconds % 60)}`;
  if (seconds < 3600) return `${Math.floor(seconds / 60)}:${rest}`;
  return `${Math.floor(seconds / 3600)}:${two(Math.floor(seconds / 60) % 60)}:${rest}`;
}

/** The remaining minutes as they are shown: "24:13", or "+3:12" once the time is over. */
export function countdown(remainingMin) {
  return remainingMin < 0 ? `+${clock(-remainingMin)}` : clock(remainingMin);
}

export function counted(number, one, many) {
  return `${number} ${number === 1 ? one : many}`;
}

/** A whole number of minutes in words: "1 minuto", "25 minuti". */
export function inMinutes(number) {
  return counted(number, 'minuto', 'minuti');
}

/** A length of time at a glance: "45 min", "2 h", "1 h 05 min". */
export function duration(milliseconds) {
  const minutes = Math.round(milliseconds / 60000);
  if (minutes < 60) return `${minutes} min`;
  const rest = minutes % 60;
  return rest ? `${Math.floor(minutes / 60)} h ${String(rest).padStart(2, '0')} min` : `${minutes / 60} h`;
}

export function timeOfDay(time) {
  return clockFormat.format(time);
}

export function dayName(time) {
  const name = dayFormat.format(time);
  return name.charAt(0).toUpperCase() + name.slice(1);
}

/** A day for all years: "16 novembre 2026". */
export function longDate(time) {
  return dateFormat.format(time);
}

export function weekday(time) {
  return weekdayFormat.format(time);
}
