// Moves between screens without loading a page: the address always names the screen that is shown.

/** The path and query of an address inside this application; null for anything else. */
export function routeOf(text, origin) {
  if (typeof text !== 'string' || !text.startsWith('/')) return null;
  let url;
  try {
    url = new URL(text, origin);
  } catch {
    return null;
  }
  return url.origin === origin
    ? { path: url.pathname, query: url.searchParams, text: url.pathname + url.search }
    : null;
}

/** Calls `show(route)` for every move; the caller shows the first screen through `current`. */
export function createRouter(window, show) {
  const { document, history, location } = window;
  const here = () => routeOf(location.pathname + location.search, location.origin);

  function go(text) {
    const route = routeOf(text, location.origin);
    if (!route) return;
    if (route.text !== here().text) history.pushState(null, '', route.text);
    show(route);
  }

  window.addEventListener('popstate', () => show(here()));
  document.addEventListener('click', (event) => {
    const modified = event.button !== 0 || event.metaKey || event.ctrlKey || event.shiftKey || event.altKey;
    const link = event.target.closest?.('a[href^="/"]');
    if (!link || modified || event.defaultPrevented) return;
    event.preventDefault();
    go(link.getAttribute('href'));
  });

  return {
    go,
    get current() {
      return here();
    },
  };
}
