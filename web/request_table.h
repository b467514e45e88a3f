#pragma once

#include <span>
#include <string_view>

namespace orvalle::web {

class Request;

/// One kind of request: the name that the page gives it, and what is done.
struct RequestRow {
  std::string_view tipo;
  void (*handle)(Request& request);
};

/// Everything that the page can ask of the desktop, in the order in which names are compared.
std::span<const RequestRow> requestTable();

}  // namespace orvalle::web
