#include "platform/page_scripts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvalle::platform {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class PageScriptsTest : public ::testing::Test {};

TEST_F(PageScriptsTest, nameTheHandlerEverywhere) {
  EXPECT_THAT(relayScript("prova"), HasSubstr("window.webkit.messageHandlers['prova']"));
  EXPECT_THAT(relayScript("prova"), HasSubstr("addEventListener('prova-message'"));
  EXPECT_THAT(pageScript("prova"), HasSubstr("new CustomEvent('prova-message'"));
  EXPECT_THAT(pageScript("prova"), HasSubstr("'prova': handler"));
  EXPECT_THAT(relayScript("prova"), Not(HasSubstr("HANDLER")));
  EXPECT_THAT(pageScript("prova"), Not(HasSubstr("HANDLER")));
}

}  // namespace
}  // namespace orvalle::platform
