// The page's side of the bridge to the desktop application. In an ordinary browser nothing answers: every call
// here is then allowed and does nothing.

const kAnswerWithinMs = 10000;

/**
 * Installs the two functions that the desktop calls. `commands` maps each command word to a function of its
 * argument (a text, or null).
 */
export function createDesktop(window, commands) {
  const handler = () => window.webkit?.messageHandlers?.orvalle;
  const pending = new Map();
  let lastId = 0;

  window.__orvalleComando = (command, argument) => {
    if (Object.hasOwn(commands, command)) commands[command](argument ?? null);
  };
  window.__orvalleRisposta = (id, text) => {
    pending.get(id)?.(text);
  };

  const desktop = {
    get present() {
      return Boolean(handler());
    },
    /** Hands over the state of the session. */
    post(snapshot) {
      handler()?.postMessage(snapshot);
    },
    /** Asks for something that has no answer. */
    request(kind, fields = {}) {
      handler()?.postMessage({ tipo: kind, ...fields });
    },
    /** Asks for something and promises the answer's text; null when none comes in time or there is no desktop. */
    ask(kind, fields = {}, withinMs = kAnswerWithinMs) {
      if (!handler()) return Promise.resolve(null);
      const id = ++lastId;
      return new Promise((resolve) => {
        const settle = (text) => {
          pending.delete(id);
          clearTimeout(timer);
          resolve(text);
        };
        const timer = setTimeout(settle, withinMs, null);
        pending.set(id, settle);
        handler().postMessage({ tipo: kind, id, ...fields });
      });
    },
    /** The same for an answer that is a document: what is in it; null when there is none. */
    async askJson(...question) {
      try {
        return JSON.parse(await desktop.ask(...question));
      } catch {
        return null;
      }
    },
  };
  return desktop;
}
