// The live link: tells the user's other devices of the session that runs here, and obeys their commands. What others
// tell of their own sessions is not listened to, and what they command is never passed on, so that nothing can go round
// in circles.

const kObeyed = ['stop', 'plus5', 'minus5', 'task'];

/** The pairing values, one a line, as the desktop's pairing window takes them from the clipboard. */
export function pairingText({ url, anonKey, channelKey }) {
  return `ORVALLE_URL=${url}\nORVALLE_ANON_KEY=${anonKey}\nORVALLE_CHANNEL_KEY=${channelKey}\n`;
}

async function fetchPairing({ fetch, location }) {
  try {
    const answer = await fetch('/api/abbinamento', { cache: 'no-store' });
    const { anonKey, channelKey } = await answer.json();
    return answer.ok && anonKey && channelKey ? { url: location.origin, anonKey, channelKey } : null;
  } catch {
    return null;
  }
}

/**
 * Joins the user's channel through the official client. `commands` maps command words to functions of their argument
 * (a text, or null), `snapshot` returns the state now, `onJoined` hears whether the channel is joined.
 */
export function createLink(client, channelKey, { commands, snapshot, onJoined }) {
  let joined = false;
  // Whether the others believe that a session runs here.
  let told = false;
  const channel = client.channel(`ov:${channelKey}`, { config: { broadcast: { self: false, ack: false } } });

  function tell() {
    const state = snapshot();
    // A page without a session is silent, lest it cover up the session of another one.
    if (!joined || (!state.running && !told)) return;
    told = state.running;
    channel.send({ type: 'broadcast', event: 'state', payload: state });
  }

  channel.on('broadcast', { event: 'cmd' }, ({ payload }) => {
    const { command, id } = payload ?? {};
    if (kObeyed.includes(command)) commands[command](typeof id === 'string' ? id : null);
  });
  channel.subscribe((status) => {
    joined = status === 'SUBSCRIBED';
    onJoined(joined);
    tell();
  });
  return {
    tell,
    command(command, id) {
      if (!joined) return;
      channel.send({ type: 'broadcast', event: 'cmd', payload: id === null ? { command } : { command, id } });
    },
  };
}

/**
 * Asks the server for the pairing values and keeps the link from then on. `loadClient` promises the official client's
 * class; `onChange` is called when `pairing` or `status` has changed.
 */
export function openLink(window, { loadClient, onChange, ...page }) {
  let pairing = null;
  let status = 'ignoto';
  let link = null;

  function become(next) {
    status = next;
    onChange();
  }

  async function hold() {
    const RealtimeClient = await loadClient();
    const client = new RealtimeClient(`${pairing.url.replace(/^http/, 'ws')}/realtime/v1`, {
      params: { apikey: pairing.anonKey },
    });
    link = createLink(client, pairing.channelKey, {
      ...page,
      onJoined: (joined) => become(joined ? 'attivo' : 'interrotto'),
    });
  }

  async function open() {
    pairing = await fetchPairing(window);
    if (!pairing) return become('assente');
    // Windows of one browser share their session: one of them keeps the link, or each command would count twice.
    const { locks } = window.navigator;
    if (!locks) return hold();
    become('altrove');
    await locks.request('orvalle-link', async () => {
      become('interrotto');
      await hold();
      await new Promise(() => {});
    });
  }

  return {
    opened: open(),
    /** The address and the two keys; null while there are none. */
    get pairing() {
      return pairing;
    },
    /** "attivo", "interrotto", "altrove" (another window of this browser keeps it), "assente" (the server has none) or,
     * before the server has said, "ignoto". */
    get status() {
      return status;
    },
    /** To be called with every new state. */
    tell() {
      link?.tell();
    },
    /** Gives a command to whoever runs a session; `id` is null for one without argument. */
    command(command, id) {
      link?.command(command, id);
    },
  };
}
