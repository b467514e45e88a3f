#pragma once

#import <WebKit/WebKit.h>

#include <functional>
#include <string>

@class OrvalleMessageHandler;

namespace orvalle::platform::macos {

/// What pages find of the program: the message handler and the script at the start of every document, in the
/// main frame alone.
class PageBridge {
 public:
  /// `received` gets the JSON text of each message.
  PageBridge(const std::string& handler, const std::string& documentStartScript,
             std::function<void(std::string)> received);
  PageBridge(const PageBridge&) = delete;
  PageBridge& operator=(const PageBridge&) = delete;
  ~PageBridge();

  WKUserContentController* _Nonnull content() const { return content_; }

 private:
  WKUserContentController* _Nonnull content_;
  OrvalleMessageHandler* _Nonnull handler_;
};

}  // namespace orvalle::platform::macos
