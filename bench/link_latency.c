// Sends states to the program and texts to the floor, by turns, and waits for what they bring about on the
// session bus. Prints the port it listens on, and in the end the median microseconds of both: the label of
// the program's status item; the floor's echo and signal. Usage: link_latency ROUNDS

#include <gio/gio.h>
#include <libsoup/soup.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define PAUSE_MS 20

typedef struct {
  SoupWebsocketConnection* program;
  SoupWebsocketConnection* floor;
  GMainLoop* loop;
  int rounds;
  int round;
  gboolean floorsTurn;
  gboolean echoed;
  gboolean heard;
  char title[32];
  gint64 start;
  gint64* programTimes;
  gint64* floorTimes;
} Bench;

static gboolean turn(gpointer data) {
  Bench* bench = data;
  snprintf(bench->title, sizeof bench->title, "Giro %d.", bench->round);
  bench->echoed = bench->heard = FALSE;
  SoupWebsocketConnection* connection = bench->floorsTurn ? bench->floor : bench->program;
  gchar* text = bench->floorsTurn
                    ? g_strdup(bench->title)
                    : g_strdup_printf(
                          "{\"topic\":\"realtime:ov:K\",\"event\":\"broadcast\",\"ref\":null,"
                          "\"payload\":{\"type\":\"broadcast\",\"event\":\"state\",\"payload\":"
                          "{\"running\":true,\"isBreak\":false,\"elapsedMin\":5,\"remainingMin\":20,"
                          "\"plannedMin\":25,\"projectTitle\":\"%s\",\"tasks\":["
                          "{\"id\":\"a\",\"title\":\"Leggere\",\"done\":false}]}}}",
                          bench->title);
  bench->start = g_get_monotonic_time();
  soup_websocket_connection_send_text(connection, text);
  g_free(text);
  return G_SOURCE_REMOVE;
}

/// The round is over: on to the next.
static void done(Bench* bench) {
  const gint64 taken = g_get_monotonic_time() - bench->start;
  (bench->floorsTurn ? bench->floorTimes : bench->programTimes)[bench->round] = taken;
  bench->title[0] = '\0';
  if (bench->floorsTurn) ++bench->round;
  bench->floorsTurn = !bench->floorsTurn;
  if (bench->round == bench->rounds) {
    g_main_loop_quit(bench->loop);
  } else {
    g_timeout_add(PAUSE_MS, turn, bench);
  }
}

static void labelled(GDBusConnection* bus, const gchar* sender, const gchar* path, const gchar* interface,
                     const gchar* signal, GVariant* values, gpointer data) {
  (void)bus, (void)sender, (void)path, (void)interface, (void)signal;
  Bench* bench = data;
  const char* label = NULL;
  g_variant_get_child(values, 0, "&s", &label);
  if (!bench->floorsTurn && *bench->title && g_str_has_suffix(label, bench->title)) done(bench);
}

static void told(GDBusConnection* bus, const gchar* sender, const gchar* path, const gchar* interface,
                 const gchar* signal, GVariant* values, gpointer data) {
  (void)bus, (void)sender, (void)path, (void)interface, (void)signal, (void)values;
  Bench* bench = data;
  bench->heard = TRUE;
  if (bench->floorsTurn && bench->echoed) done(bench);
}

static void echo(SoupWebsocketConnection* connection, gint type, GBytes* message, gpointer data) {
  (void)connection, (void)type, (void)message;
  Bench* bench = data;
  bench->echoed = TRUE;
  if (bench->floorsTurn && bench->heard) done(bench);
}

static void startWhenComplete(Bench* bench) {
  if (bench->program && bench->floor) g_timeout_add_seconds(5, turn, bench);
}

static void programSaid(SoupWebsocketConnection* connection, gint type, GBytes* message, gpointer data) {
  (void)type;
  Bench* bench = data;
  if (bench->program ||
      !g_strstr_len(g_bytes_get_data(message, NULL), (gssize)g_bytes_get_size(message), "phx_join"))
    return;
  soup_websocket_connection_send_text(connection,
                                      "{\"event\":\"phx_reply\",\"payload\":{\"status\":\"ok\"}}");
  bench->program = connection;
  startWhenComplete(bench);
}

static void accept(SoupServer* server, SoupServerMessage* request, const char* path,
                   SoupWebsocketConnection* connection, gpointer data) {
  (void)server, (void)request;
  Bench* bench = data;
  g_object_ref(connection);
  if (strcmp(path, "/floor") == 0) {
    g_signal_connect(connection, "message", G_CALLBACK(echo), bench);
    bench->floor = connection;
    startWhenComplete(bench);
  } else {
    g_signal_connect(connection, "message", G_CALLBACK(programSaid), bench);
  }
}

static int earlier(const void* one, const void* other) {
  const gint64 first = *(const gint64*)one;
  const gint64 second = *(const gint64*)other;
  return (first > second) - (first < second);
}

static gint64 median(gint64* times, int count) {
  qsort(times, (size_t)count, sizeof *times, earlier);
  return times[count / 2];
}

int main(int argc, char** argv) {
  const int rounds = argc == 2 ? atoi(argv[1]) : 0;
  if (rounds < 1) return 2;
  Bench bench = {.loop = g_main_loop_new(NULL, FALSE), .rounds = rounds};
  bench.programTimes = g_new0(gint64, (gsize)rounds);
  bench.floorTimes = g_new0(gint64, (gsize)rounds);

  GDBusConnection* bus = g_bus_get_sync(G_BUS_TYPE_SESSION, NULL, NULL);
  SoupServer* server = soup_server_new(NULL, NULL);
  soup_server_add_websocket_handler(server, NULL, NULL, NULL, accept, &bench, NULL);
  if (!bus || !soup_server_listen_local(server, 0, SOUP_SERVER_LISTEN_IPV4_ONLY, NULL)) return 1;
  g_dbus_connection_signal_subscribe(bus, NULL, NULL, "XAyatanaNewLabel", NULL, NULL, 0, labelled, &bench,
                                     NULL);
  g_dbus_connection_signal_subscribe(bus, NULL, "test.Floor", "Heard", NULL, NULL, 0, told, &bench, NULL);
  GSList* addresses = soup_server_get_uris(server);
  printf("%d\n", g_uri_get_port(addresses->data));
  fflush(stdout);
  g_main_loop_run(bench.loop);
  printf("%" G_GINT64_FORMAT " %" G_GINT64_FORMAT "\n", median(bench.programTimes, rounds),
         median(bench.floorTimes, rounds));
  return 0;
}
