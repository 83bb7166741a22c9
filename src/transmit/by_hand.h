// All that the user sends by hand beside the command box: typed keys, pastes, files.
#pragma once

#include "transmit/file_sender.h"
#include "transmit/typing.h"

namespace quarlin {

struct ByHand {
  ByHand(const FileParts& parts, LinkControls& link, Prompts& prompts)
      : files(parts), typing({link, parts.link, parts.sender, files, prompts, parts.status}) {}

  // The link was closed, or data cannot pass any more.
  void LinkLost() { files.LinkLost("the link was closed"); }

  // Data may pass from now on, or no longer; for the view.
  Hook<void()> OnLinkChanged;

  FileSender files;
  Typing typing;
};

}  // namespace quarlin
