#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "demo/server/phoenix_frame.h"

namespace orvalle::demo {

/// Passes broadcasts on among the clients that have joined the same channel, as a Phoenix server does. Knows
/// nothing of sockets or time. Whatever a client sends, the others go on undisturbed.
class RealtimeHub {
 public:
  using Client = std::uint64_t;
  /// Takes a message for a client; must not call the hub.
  using Send = std::function<void(const WireMessage&)>;

  static constexpr std::size_t kMostChannels = 100;
  static constexpr std::size_t kLongestTopic = 255;

  /// A client that has connected and joined nothing yet.
  Client add(Serializer serializer, Send send);
  /// Takes the client out of all its channels. Nothing is sent.
  void remove(Client client);
  /// A message from the client. One that is no frame is dropped.
  void receive(Client client, const WireMessage& message);

 private:
  struct Connection {
    Serializer serializer;
    Send send;
    std::size_t channels = 0;
  };
  /// What a client chose when it joined.
  struct Membership {
    base::Json joinRef;
    bool hearsItself = false;
    bool wantsReplies = false;
  };
  using Members = std::map<Client, Membership>;

  void join(Client client, const PhoenixFrame& frame);
  void leave(Client client, const PhoenixFrame& frame);
  void broadcast(Client client, const PhoenixFrame& frame);
  const Membership* membership(Client client, const std::string& topic) const;
  void end(Client client, const std::string& topic, const char* event);
  void reply(Client client, const PhoenixFrame& frame, const char* status, base::Json response);
  void send(Client client, const PhoenixFrame& frame);

  std::map<Client, Connection> clients_;
  std::map<std::string, Members> channels_;
  Client lastClient_ = 0;
};

}  // namespace orvalle::demo
