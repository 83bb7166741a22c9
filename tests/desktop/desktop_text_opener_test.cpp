// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/desktop_text_opener.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <fstream>
#include <map>
#include <string>
#include <thread>

#include "base/files.h"
#include "desktop/editor_lookup.h"

namespace quarlin {
namespace {

namespace fs = std::filesystem;
using Command = std::optional<std::vector<std::string>>;

// A made-up desktop in a folder of its own: conf/, data/, sys/ and bin/.
class Desktop {
 public:
  Desktop() {
    std::string name = (fs::temp_directory_path() / "quarlin-desktop-XXXXXX").string();
    root_ = mkdtemp(name.data());
    for (const char* folder : {"conf", "etc", "data/applications", "sys/applications/maker", "bin"}) {
      fs::create_directories(root_ / folder);
    }
  }
  ~Desktop() { fs::remove_all(root_); }
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  fs::path File(std::string_view name) const { return root_ / name; }

  void Write(std::string_view name, std::string_view content) const {
    std::ofstream(File(name), std::ios::binary) << content;
  }

  void Program(std::string_view name, std::string_view script = "#!/bin/sh\n") const {
    Write("bin/" + std::string(name), script);
    fs::permissions(File("bin/" + std::string(name)), fs::perms::owner_all);
  }

  void Entry(std::string_view name, std::string_view lines) const {
    Write("sys/applications/" + std::string(name),
          "[Desktop Entry]\nType=Application\n" + std::string(lines));
  }

  std::string operator()(const char* variable) const {
    const std::map<std::string, std::string> values{
        {"XDG_CONFIG_HOME", File("conf").string()},
        {"XDG_CONFIG_DIRS", File("etc").string()},
        {"XDG_DATA_HOME", File("data").string()},
        {"XDG_DATA_DIRS", "/nowhere:" + File("sys").string()},
        {"PATH", File("bin").string()},
        {"XDG_CURRENT_DESKTOP", "Own:GNOME"},
    };
    const auto found = values.find(variable);
    return found == values.end() ? "" : found->second;
  }
  Environment Variables() const {
    return [this](const char* variable) { return (*this)(variable); };
  }

 private:
  fs::path root_;
};

// One, two, term and writer, as a system would have them installed.
void Install(const Desktop& desktop) {
  for (const char* program : {"one", "two", "term", "writer"}) desktop.Program(program);
  desktop.Entry("one.desktop", "Exec=one %F\nTerminal=false\nCategories=Utility;TextEditor;\n");
  desktop.Entry("maker/two.desktop", "Exec=\"two\" --new \"a \\\\\"b\\\\\"\" %u\n[Action]\nExec=wrong\n");
  desktop.Entry("term.desktop", "Exec=term %f\nTerminal=true\nCategories=TextEditor;\n");
  desktop.Entry("writer.desktop", "Exec=writer --title=%c%% %U\nCategories=Office;\n");
  desktop.Entry("hidden.desktop", "Exec=one\nHidden=true\n");
  desktop.Entry("missing.desktop", "Exec=absent %f\n");
  desktop.Entry("untried.desktop", "TryExec=absent\nExec=one %f\n");
  desktop.Entry("open.desktop", "Exec=\"one\n");
}

TEST(TextEditor, IsTheDesktopsDefaultThenWhatCanOpenText) {
  const std::string cache = "[MIME Cache]\ntext/plain=";
  const std::string defaults = "[Default Applications]\ntext/plain=";
  struct Case {
    std::map<std::string, std::string> files;
    std::vector<std::string> words;  // the program by its name; none: not found
  };
  const std::vector<Case> cases{
      {{}, {}},
      {{{"sys/applications/mimeinfo.cache", cache + "term.desktop;"}}, {}},
      {{{"sys/applications/mimeinfo.cache", cache + "writer.desktop;\n"}}, {"writer", "--title=%"}},
      {{{"sys/applications/mimeinfo.cache", cache + "term.desktop;writer.desktop;one.desktop;"}}, {"one"}},
      {{{"conf/mimeapps.list", "text/plain=one.desktop\n[Other]\ntext/plain=one.desktop"}}, {}},
      {{{"conf/mimeapps.list", "# mine\r\n" + defaults + " maker-two.desktop\r\n"},
        {"sys/applications/mimeapps.list", defaults + "one.desktop"}},
       {"two", "--new", "a \"b\""}},
      {{{"conf/mimeapps.list",
         defaults + "gone.desktop;hidden.desktop;missing.desktop;untried.desktop;open.desktop;term.desktop"},
        {"etc/mimeapps.list", defaults + "one.desktop"}},
       {"one"}},
      {{{"conf/mimeapps.list", defaults + "one.desktop"},
        {"conf/gnome-mimeapps.list", defaults + "writer.desktop"}},
       {"writer", "--title=%"}},
      {{{"conf/mimeapps.list", "[Added Associations]\ntext/plain=writer.desktop;one.desktop\n"},
        {"data/applications/mimeapps.list", defaults + "one.desktop"}},
       {"one"}},
      {{{"conf/mimeapps.list", "[Added Associations]\ntext/plain=writer.desktop\n"},
        {"sys/applications/mimeinfo.cache", cache + "one.desktop"}},
       {"writer", "--title=%"}},
      {{{"conf/mimeapps.list", "[Removed Associations]\ntext/plain=one.desktop;\n"},
        {"sys/applications/mimeinfo.cache", cache + "one.desktop;writer.desktop"}},
       {"writer", "--title=%"}},
  };
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const Desktop desktop;
    Install(desktop);
    for (const auto& [name, content] : cases[i].files) desktop.Write(name, content);
    Command expected;
    if (!cases[i].words.empty()) {
      expected = cases[i].words;
      expected->front() = desktop.File("bin/" + expected->front()).string();
    }
    EXPECT_EQ(FindTextEditor(desktop.Variables()), expected) << "case " << i;
  }
}

std::string AwaitContent(const fs::path& file) {
  for (int i = 0; i < 6000; ++i) {
    if (const auto content = ReadWholeFile(file); content && !content->empty()) return *content;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return "nothing came";
}

// What a started program finds: its arguments, its folder, and which descriptors it was left.
constexpr std::string_view witness =
    "#!/bin/sh\n"
    "exec >\"$0.tmp\"\n"
    "echo \"$# $1 $2\"; pwd; ls -l /proc/$$/fd >\"$0.fds\"; grep -c pipe \"$0.fds\"\n"
    "mv \"$0.tmp\" \"$0.out\"\n";

TEST(DesktopTextOpener, StartsTheEditorOnTheFileAndLeavesItAlone) {
  const Desktop desktop;
  desktop.Program("one", witness);
  desktop.Entry("one.desktop", "Exec=one --wait %F\n");
  desktop.Write("sys/applications/mimeinfo.cache", "[MIME Cache]\ntext/plain=one.desktop;\n");
  int ours[2];
  ASSERT_EQ(pipe(ours), 0);  // as a port that was opened without care

  DesktopTextOpener opener(desktop.Variables());
  EXPECT_EQ(opener.EditorPath(), desktop.File("bin/one"));
  EXPECT_TRUE(opener.OpenText(desktop.File("data/a file.txt")));

  EXPECT_EQ(AwaitContent(desktop.File("bin/one.out")), "2 --wait " +
                                                           desktop.File("data/a file.txt").string() + "\n" +
                                                           desktop.File("data").string() + "\n0\n");
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD) << "a child is left for us to bury";
  close(ours[0]);
  close(ours[1]);
}

TEST(DesktopTextOpener, WithoutAnEditorItAsksTheDesktopAndFailsWhereThereIsNone) {
  const Desktop desktop;
  desktop.Write("text.txt", "text");
  EXPECT_FALSE(DesktopTextOpener(desktop.Variables()).OpenText(desktop.File("text.txt")));

  desktop.Program("xdg-open", witness);
  DesktopTextOpener opener(desktop.Variables());
  EXPECT_EQ(opener.EditorPath(), "");
  EXPECT_TRUE(opener.OpenText(desktop.File("text.txt")));
  EXPECT_NE(AwaitContent(desktop.File("bin/xdg-open.out")).find("text.txt"), std::string::npos);

  desktop.Program("xdg-open", "#!/nowhere/interpreter\n");
  EXPECT_FALSE(opener.OpenText(desktop.File("text.txt")));
}

}  // namespace
}  // namespace quarlin
