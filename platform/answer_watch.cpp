#include "platform/answer_watch.h"

#include <utility>

namespace orvalle::platform {

AnswerWatch::AnswerWatch(MainLoop& loop, WebWindowDelegate& delegate, Ask ask)
    : loop_(loop),
      delegate_(delegate),
      ask_(std::move(ask)),
      questions_(loop.every(kAnswerQuestion, [this] { this->ask(); })) {}

base::Subscription AnswerWatch::hold() {
  ++held_;
  patience_.reset();
  // It came as far as asking the user.
  tellThatItAnswers();
  return base::Subscription(liveness_.guard([this] {
    if (--held_ == 0 && awaited_) wait();
  }));
}

void AnswerWatch::startAgain() {
  ++number_;
  answered();
}

void AnswerWatch::ask() {
  if (awaited_ || held_ > 0) return;
  awaited_ = true;
  wait();
  ask_(liveness_.guard([this, number = ++number_] {
    if (number == number_) answered();
  }));
}

void AnswerWatch::answered() {
  awaited_ = false;
  patience_.reset();
  tellThatItAnswers();
}

void AnswerWatch::wait() {
  patience_ = loop_.after(kAnswerNotice, [this] {
    silent_ = true;
    delegate_.didStopAnswering();
  });
}

void AnswerWatch::tellThatItAnswers() {
  if (std::exchange(silent_, false)) delegate_.didAnswerAgain();
}

}  // namespace orvalle::platform
