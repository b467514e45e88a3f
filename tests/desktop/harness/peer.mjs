// The web application on another device, without a screen: runs a session, tells of it through the official client
// and obeys commands. Arguments: the server's address, the serializer's version, the session as JSON (title, minutes,
// tasks). Prints a line of JSON for each thing that happens.

import { createRequire } from 'node:module';

import { createLink } from '../../../demo/page/link.js';
import * as session from '../../../demo/page/session.js';
import { createStore } from '../../../demo/page/store.js';
import { RealtimeClient } from '../../../demo/page/vendor/realtime.js';

const [address, vsn, wanted] = process.argv.slice(2);
const { title, minutes, tasks } = JSON.parse(wanted);
const say = (fact) => console.log(JSON.stringify(fact));

const { anonKey, channelKey } = await (await fetch(`${address}/api/abbinamento`)).json();
const store = createStore(null);
const change = (what, ...values) => store.update((state) => what(state, ...values));
const client = new RealtimeClient(`${address.replace(/^http/, 'ws')}/realtime/v1`, {
  params: { apikey: anonKey },
  vsn,
  // Debian's package: Node.js 18 has no websockets of its own.
  transport: createRequire(import.meta.url)('/usr/share/nodejs/ws'),
  reconnectAfterMs: () => 500,
});
function obey(command, id, what, ...values) {
  say({ obeyed: command, id });
  change(what, ...values);
}
const link = createLink(client, channelKey, {
  commands: {
    stop: (id) => obey('stop', id, session.stop, Date.now()),
    plus5: (id) => obey('plus5', id, session.lengthen),
    minus5: (id) => obey('minus5', id, session.shorten),
    task: (id) => obey('task', id, session.toggleTask, id),
  },
  snapshot: () => session.snapshot(store.state, Date.now(), address),
  onJoined: (joined) => say({ joined }),
});

change(session.setProject, title);
for (const { id, title: name } of tasks) change(session.addTask, id, name);
store.subscribe(() => link.tell());
change(session.start, { isBreak: false, minutes }, Date.now());
setInterval(() => link.tell(), 5000);
