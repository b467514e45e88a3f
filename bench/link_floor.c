// The least that a link to the tray could take: a websocket client that sends each text back and tells it
// over the session bus, and nothing else. Usage: link_floor ADDRESS

#include <gio/gio.h>
#include <libsoup/soup.h>

typedef struct {
  SoupSession* session;
  SoupWebsocketConnection* connection;
  GDBusConnection* bus;
  GMainLoop* loop;
} Floor;

static void received(SoupWebsocketConnection* connection, gint type, GBytes* message, gpointer data) {
  const Floor* floor = data;
  (void)type;
  gsize size = 0;
  const char* bytes = g_bytes_get_data(message, &size);
  gchar* text = g_strndup(bytes, size);
  soup_websocket_connection_send_text(connection, text);
  g_dbus_connection_emit_signal(floor->bus, NULL, "/floor", "test.Floor", "Heard", g_variant_new("(s)", text),
                                NULL);
  g_free(text);
}

static void connected(GObject* session, GAsyncResult* result, gpointer data) {
  Floor* floor = data;
  floor->connection = soup_session_websocket_connect_finish(SOUP_SESSION(session), result, NULL);
  if (!floor->connection) g_error("no connection");
  g_signal_connect(floor->connection, "message", G_CALLBACK(received), floor);
  g_signal_connect_swapped(floor->connection, "closed", G_CALLBACK(g_main_loop_quit), floor->loop);
}

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  Floor floor = {soup_session_new(), NULL, g_bus_get_sync(G_BUS_TYPE_SESSION, NULL, NULL),
                 g_main_loop_new(NULL, FALSE)};
  if (!floor.bus) return 1;
  SoupMessage* request = soup_message_new("GET", argv[1]);
  soup_session_websocket_connect_async(floor.session, request, NULL, NULL, G_PRIORITY_DEFAULT, NULL,
                                       connected, &floor);
  g_main_loop_run(floor.loop);
  return 0;
}
