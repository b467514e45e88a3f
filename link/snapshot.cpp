#include "link/snapshot.h"

#include <utility>

namespace orvalle::link {
namespace {

using base::Json;
using base::jsonBoolean;
using base::jsonMember;
using base::jsonNumber;
using base::jsonText;

std::optional<TaskRow> decodeTask(const Json& row) {
  auto id = jsonText(jsonMember(row, "id"));
  auto title = jsonText(jsonMember(row, "title"));
  const auto done = jsonBoolean(jsonMember(row, "done"));
  if (!id || !title || !done) return {};
  return TaskRow{std::move(*id), std::move(*title), *done};
}

std::optional<std::vector<TaskRow>> decodeTasks(const Json* list) {
  const auto* rows = list ? list->if_array() : nullptr;
  if (!rows) return {};
  std::vector<TaskRow> tasks;
  tasks.reserve(rows->size());
  for (const auto& row : *rows) {
    auto task = decodeTask(row);
    if (!task) return {};
    tasks.push_back(std::move(*task));
  }
  return tasks;
}

}  // namespace

std::optional<Snapshot> decodeSnapshot(const Json& state) {
  const auto running = jsonBoolean(jsonMember(state, "running"));
  const auto isBreak = jsonBoolean(jsonMember(state, "isBreak"));
  const auto elapsed = jsonNumber(jsonMember(state, "elapsedMin"));
  const auto remaining = jsonNumber(jsonMember(state, "remainingMin"));
  const auto planned = jsonNumber(jsonMember(state, "plannedMin"));
  auto project = jsonText(jsonMember(state, "projectTitle"));
  auto tasks = decodeTasks(jsonMember(state, "tasks"));
  if (!running || !isBreak || !elapsed || !remaining || !planned || !project || !tasks) return {};

  std::optional<std::string> origin;
  if (const auto* given = jsonMember(state, "origin"); given && !given->is_null()) {
    origin = jsonText(given);
    if (!origin) return {};
  }
  return Snapshot{*running,          *isBreak,         *elapsed, *remaining, *planned, std::move(*project),
                  std::move(origin), std::move(*tasks)};
}

}  // namespace orvalle::link
