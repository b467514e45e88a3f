// The same as frames.cpp with the official client: MODULE TEXT-FILE COUNT. The client finds a websocket that hands
// it the text from memory.
import { readFileSync } from 'node:fs';
import { resolve } from 'node:path';

const [module, file, number] = process.argv.slice(2);
const { RealtimeClient } = await import(resolve(module));
const text = readFileSync(file, 'utf8');
const count = Number(number);

let socket;
class MemorySocket {
  constructor() {
    socket = this;
    this.readyState = 0;
    this.bufferedAmount = 0;
    queueMicrotask(() => {
      this.readyState = 1;
      this.onopen?.({});
    });
  }
  send(sent) {
    const { topic, ref, event } = JSON.parse(sent);
    if (event !== 'phx_join') return;
    queueMicrotask(() => this.onmessage({ data: JSON.stringify(
      { topic, event: 'phx_reply', ref, payload: { status: 'ok', response: { postgres_changes: [] } } }) }));
  }
  close() {
    this.readyState = 3;
  }
}

const client = new RealtimeClient('ws://localhost/realtime/v1', {
  transport: MemorySocket, params: { apikey: 'anon' }, vsn: '1.0.0' });
let states = 0;
const topic = JSON.parse(text).topic.replace(/^realtime:/, '');
const channel = client.channel(topic, { config: { broadcast: { self: false, ack: false } } });
channel.on('broadcast', { event: 'state' }, () => {
  states += 1;
});
await new Promise((done, fail) => {
  channel.subscribe((status) => {
    if (status === 'SUBSCRIBED') done();
    else fail(new Error(status));
  });
});

const message = { data: text };
const STRETCHES = 50;
const stretch = Math.floor(count / STRETCHES) + 1;
let best = Infinity;
for (let i = 0; i < STRETCHES; i += 1) {
  const start = process.hrtime.bigint();
  for (let j = 0; j < stretch; j += 1) socket.onmessage(message);
  best = Math.min(best, Number(process.hrtime.bigint() - start) / stretch);
}
if (states !== STRETCHES * stretch) {
  console.error(`frames_peer: only ${states} states arrived`);
  process.exit(1);
}
console.log(best.toFixed(0));
process.exit(0);
