// A remote control for the session of a page: lengthens it when it runs, then stops it. Argument: the server's address.
// Prints a line of JSON for each state that it hears.

import { createRequire } from 'node:module';

import { RealtimeClient } from '../../../demo/page/vendor/realtime.js';

const address = process.argv[2];
const { anonKey, channelKey } = await (await fetch(`${address}/api/abbinamento`)).json();
const client = new RealtimeClient(`${address.replace(/^http/, 'ws')}/realtime/v1`, {
  params: { apikey: anonKey },
  transport: createRequire(import.meta.url)('/usr/share/nodejs/ws'),
});
const channel = client.channel(`ov:${channelKey}`, { config: { broadcast: { self: false, ack: false } } });
const commands = ['plus5', 'stop'];
let seen = null;
channel.on('broadcast', { event: 'state' }, ({ payload }) => {
  console.log(JSON.stringify(payload));
  // The next command only when the state shows the last one.
  const shown = JSON.stringify([payload.running, payload.plannedMin]);
  if (shown === seen || commands.length === 0) return;
  seen = shown;
  channel.send({ type: 'broadcast', event: 'cmd', payload: { command: commands.shift() } });
});
channel.subscribe((status) => console.log(JSON.stringify({ status })));
