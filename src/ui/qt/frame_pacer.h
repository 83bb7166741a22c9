// SPDX-License-Identifier: GPL-3.0-or-later
// Decides when the window is brought up to date: at once when it has been quiet, else at most 30 times a
// second, half as often once that has gone on for a second, and less often when a frame costs much.
// Without requests it sleeps.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <chrono>
#include <functional>

namespace quarlin {

class FramePacer {
 public:
  // `frame` shows and paints what changed; what it takes is measured. From one frame to the next it is at
  // least `interval`.
  explicit FramePacer(std::function<void()> frame,
                      std::chrono::milliseconds interval = std::chrono::milliseconds(33));

  // Asks for a frame. Further requests before it are part of it.
  void Request();

  // The same, without the pause behind the last one: the user has asked for it.
  void RequestAtOnce();

  // What the last frame has cost since, elsewhere; the pause behind it grows accordingly and begins now.
  void AddCost(std::chrono::microseconds cost);

  // How long the window is left alone after a frame that took `cost`: the frame then has at most about a
  // tenth of the time.
  static std::chrono::microseconds PauseAfter(
      std::chrono::microseconds cost, std::chrono::microseconds interval = std::chrono::milliseconds(33));

 private:
  void Run();
  void BeginPause();

  std::function<void()> frame_;
  std::chrono::milliseconds interval_;
  QTimer timer_;
  QElapsedTimer sinceFrame_;           // from the end of the last one
  std::chrono::microseconds cost_{0};  // of the last one
  std::chrono::microseconds pause_{0};
  int framesInARow_ = 0;  // without a rest between them
};

}  // namespace quarlin
