#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/json.h"
#include "link/realtime_channel.h"
#include "platform/memory/memory_link.h"
#include "platform/memory/memory_stores.h"
#include "platform/memory/virtual_time.h"

namespace orvalle::link {

inline constexpr char kState[] =
    R"({"topic":"realtime:ov:K","event":"broadcast","ref":null,"payload":{"type":"broadcast","event":"state","payload":
       {"running":true,"isBreak":false,"elapsedMin":5,"remainingMin":20,"plannedMin":25,"projectTitle":"P","tasks":[]}}})";
inline constexpr char kReply[] =
    R"({"topic":"realtime:ov:K","event":"phx_reply","payload":{"status":"ok","response":{}},"ref":"1"})";
inline constexpr char kErrorReply[] =
    R"({"topic":"realtime:ov:K","event":"phx_reply","payload":{"status":"error","response":{"reason":"no"}},"ref":"1"})";

class RealtimeChannelTest : public testing::Test {
 protected:
  RealtimeChannelTest() {
    channel_->onState = [this](const Snapshot& snapshot) { states_.push_back(snapshot); };
    channel_->onConnection = [this](bool connected) { connections_.push_back(connected); };
  }

  /// Stores complete settings.
  void pair() {
    config_.setUrl("https://p.example");
    config_.setAnonKey("anon");
    config_.setChannelKey("K");
  }

  /// A paired channel whose first connection is open.
  platform::memory::WebSocketState& open() {
    pair();
    channel_->connect();
    last().accept();
    return last();
  }

  platform::memory::WebSocketState& last() { return *sockets_.all.back(); }

  static base::Json frame(const std::string& text) { return base::parseJson(text).value(); }
  /// The number that a message carries.
  static std::string ref(const std::string& text) {
    const auto parsed = frame(text);
    return base::jsonText(base::jsonMember(parsed, "ref")).value();
  }

  platform::memory::VirtualTime time_;
  platform::memory::MemoryDefaults defaults_;
  Config config_{defaults_};
  platform::memory::MemoryWebSockets sockets_;
  std::unique_ptr<RealtimeChannel> channel_ = std::make_unique<RealtimeChannel>(config_, sockets_, time_);
  std::vector<Snapshot> states_;
  std::vector<bool> connections_;
};

}  // namespace orvalle::link
