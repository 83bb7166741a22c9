// SPDX-License-Identifier: GPL-3.0-or-later
// All that the user sends by hand beside the cycle: typed keys, pastes, files, quick sends, and the commands
// that were sent before.
#pragma once

#include "transmit/command_history.h"
#include "transmit/file_sender.h"
#include "transmit/quick_sends.h"
#include "transmit/typing.h"

namespace quarlin {

struct ByHand {
  ByHand(const FileParts& parts, LinkControls& link, Prompts& prompts, const ProgramFolder& folder,
         std::function<void(std::string_view)> trouble)
      : files(parts),
        typing({link, parts.link, parts.sender, files, prompts, parts.status}),
        quick({parts.loop, parts.link, parts.exchange, parts.sender, parts.counters, parts.traffic,
               parts.status},
              folder, [this] { return files.Active(); }),
        history(parts.loop, folder, std::move(trouble)) {
    files.OnEnd = [this] { quick.MayGoOn(); };
  }

  // The link was closed, or data cannot pass any more.
  void LinkLost() {
    files.LinkLost("the link was closed");
    quick.StopWaiting();
  }

  // Data may pass from now on, or no longer.
  void LinkChanged() {
    quick.MayGoOn();
    OnLinkChanged();
  }
  Hook<void()> OnLinkChanged;  // for the view

  FileSender files;
  Typing typing;
  QuickSends quick;
  CommandHistory history;
};

}  // namespace quarlin
