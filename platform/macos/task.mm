#import "platform/macos/task.h"

#include "platform/macos/file_url.h"
#include "platform/macos/text.h"

namespace orvalle::platform::macos {

NSTask* makeTask(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
  NSMutableArray<NSString*>* words = [NSMutableArray array];
  for (const auto& argument : arguments) [words addObject:nativeText(argument)];
  NSTask* task = [[NSTask alloc] init];
  task.executableURL = fileUrl(program);
  task.arguments = words;
  task.standardInput = NSFileHandle.fileHandleWithNullDevice;
  task.standardOutput = NSFileHandle.fileHandleWithNullDevice;
  task.standardError = NSFileHandle.fileHandleWithNullDevice;
  return task;
}

std::optional<std::string> launch(NSTask* task) {
  NSError* error = nil;
  if ([task launchAndReturnError:&error]) return {};
  return utf8Text(error.localizedDescription);
}

}  // namespace orvalle::platform::macos
