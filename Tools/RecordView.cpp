// record-view CAST TEXT: plays a tour of the workspace view at the pace of a person and records what the terminal
// receives, as an asciicast, and the screen of its telling moment, as text. All of it happens in a home of its own.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "OrvaneShell/Terminal/CastText.h"
#include "Platform/AsioMainLoop.h"
#include "Platform/Environment.h"
#include "Platform/LoopThread.h"
#include "Support/TemporaryFolder.h"
#include "TerminalEmulator/HeadlessTerminal.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

constexpr int cols = 112;
constexpr int rows = 32;
constexpr Duration patience = 30s;

/// A terminal whose output is recorded.
class RecordedTerminal final : public HeadlessTerminal {
 public:
    RecordedTerminal(MainLoop& loop, MainLoop& reader, std::function<void(std::optional<int>)> atEnd)
        : HeadlessTerminal(loop, reader, {.cols = cols, .rows = rows}, std::move(atEnd)), loop_(loop) {}

    void mark(std::string_view label) { cast += CastText::marker(time(), label); }

    std::string cast = CastText::header(cols, rows);

 protected:
    void dataReceived(std::string_view slice) override {
        cast += text_.output(time(), slice);
        HeadlessTerminal::dataReceived(slice);
    }

 private:
    CastText::Time time() const { return loop_.now() - start_; }

    MainLoop& loop_;
    Instant start_ = loop_.now();
    CastText text_;
};

/// The home of somebody who has a small shop under version control, and agents that play their part.
class Stage {
 public:
    Stage() {
        for (const char* name : {"run", "tmp", "bin", "website"})
            std::filesystem::create_directory(home_.path(name));
        const std::string path = "PATH=" + home_.path("bin") + ":/usr/bin:/bin\n";
        home_.write(".bash_profile", path + "PS1='\\W $ '\n");
        home_.write(".zprofile", path);
        home_.write(".zshrc", "PROMPT='%1~ $ '\nunsetopt PROMPT_SP\n");
        home_.write("website/server.log", "listening on :3000\nGET /cart 200 12 ms\nPOST /checkout 200 48 ms\n");
        for (const char* name : {"cart.js", "checkout.js", "index.html", "package.json"})
            home_.write(std::string("website/") + name, "");
        std::filesystem::create_symlink(ORVANE_EXECUTABLE, home_.path("bin/orvane"));
        std::filesystem::create_symlink(ORVANE_SCRIPTED_AGENT, home_.path("bin/claude"));
        run("git init -q -b main website && cd website && git add . && "
            "git -c user.name=Ann -c user.email=ann@example.org commit -q -m 'A shop with a cart'");
    }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    ~Stage() { run("orvane quit --force"); }

    const TemporaryFolder& home() const { return home_; }

    std::vector<std::string> environment() const {
        return {"HOME=" + home_.path(),
                "XDG_DATA_HOME=" + home_.path("data"),
                "XDG_CONFIG_HOME=" + home_.path("config"),
                "XDG_RUNTIME_DIR=" + home_.path("run"),
                "TMPDIR=" + home_.path("tmp"),
                "PATH=" + home_.path("bin") + ":/usr/bin:/bin",
                "SHELL=/bin/bash",
                "PS1=website $ ",
                "LANG=C.UTF-8",
                "TERM=xterm-256color",
                "COLORTERM=truecolor",
                "ORVANE_TEST_SCENARIO=" ORVANE_SOURCE_DIR "/Tests/Agents/Scenarios/tour.agent"};
    }

 private:
    void run(const std::string& line) const {
        std::string command = "cd '" + home_.path() + "' && env -i";
        for (const std::string& pair : environment())
            command += " '" + pair + "'";
        command += " sh -c \"" + line + "\" >/dev/null";
        if (std::system(command.c_str()) != 0) std::cerr << "failed: " << line << '\n';  // NOLINT(cert-env33-c)
    }

    TemporaryFolder home_;
};

class Tour {
 public:
    Tour() {
        const auto started = terminal_.process.startProcess({.executable = "/bin/sh",
                                                             .args = {},
                                                             .environment = stage_.environment(),
                                                             .execName = {},
                                                             .currentDirectory = stage_.home().path("website")});
        if (!started) throw std::runtime_error(started.error().message());
    }

    void play();

    const std::string& cast() const { return terminal_.cast; }
    const std::string& tellingScreen() const { return tellingScreen_; }

 private:
    void see(const std::string& text);
    void pause(Duration time);
    void type(std::string_view keys);
    void line(const std::string& text);
    void command(std::string_view key);
    void startAgent(const std::string& title);
    std::string screen() const;

    AsioMainLoop loop_;
    LoopThread reader_;
    Stage stage_;
    bool isOver_ = false;
    RecordedTerminal terminal_{loop_, reader_.loop(), [this](std::optional<int>) { isOver_ = true; }};
    std::string tellingScreen_;
};

std::string Tour::screen() const {
    std::string all;
    for (int y = 0; y < rows; ++y) {
        const std::string row = terminal_.terminal.getLine(y).translateToString(terminal_.terminal.clusters());
        all += row.substr(0, row.find_last_not_of(' ') + 1) + "\n";
    }
    return all;
}

void Tour::pause(Duration time) {
    const auto timer = loop_.after(time, [this] { loop_.stop(); });
    loop_.run();
}

void Tour::see(const std::string& text) {
    const Instant limit = loop_.now() + patience;
    while (!screen().contains(text)) {
        if (loop_.now() > limit || isOver_) throw std::runtime_error("never seen: " + text + "\n" + screen());
        pause(20ms);
    }
    pause(400ms);
}

void Tour::type(std::string_view keys) {
    for (const char key : keys) {
        terminal_.send(std::string_view(&key, 1));
        pause(key == ' ' ? 90ms : 55ms);
    }
}

void Tour::line(const std::string& text) {
    type(text);
    pause(250ms);
    terminal_.send("\r");
}

/// The leader stays for a moment, so that the keys are seen that it offers.
void Tour::command(std::string_view key) {
    terminal_.send("\x02");
    pause(500ms);
    terminal_.send(key);
}

void Tour::startAgent(const std::string& title) {
    command("c");
    see("New session");
    terminal_.send("\r");
    see("❯");
    command("$");
    see("claude");
    terminal_.send("\x15");
    line(title);
    see("◦ " + title);
}

void Tour::play() {
    see("website $");
    line("orvane");
    see("▾ website");
    see("C-b commands");
    pause(700ms);
    line("ls");
    see("checkout.js");
    command("%");
    pause(700ms);
    line("tail -f server.log");
    see("POST /checkout");

    startAgent("checks");
    startAgent("discount");
    command(" ");
    see("Layouts");
    line("grid");
    pause(700ms);
    line("Why is the discount wrong?");
    see("● discount");
    command("\x1b[D");
    pause(300ms);
    line("Run the tests of the checkout");
    see("● checks");
    command("\x1b[C");  // away from it, before it asks
    see("1 session needs you");
    pause(1500ms);
    terminal_.mark("an agent asks");
    tellingScreen_ = screen();
    pause(800ms);
    command("a");
    see("checks asks");
    pause(1500ms);
    terminal_.send("1");
    see("All tests of the checkout pass.");
    pause(1200ms);
    command("z");
    see("[zoomed]");
    pause(1500ms);
    command("z");
    pause(800ms);
    command("b");
    pause(1000ms);
    command("b");
    pause(1000ms);
    command("d");
    see("Agents go on");
    pause(1500ms);
}

void write(const char* path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush()) throw std::runtime_error(std::string("cannot write ") + path);
}

}  // namespace
}  // namespace orvane

int main(int argc, char** argv) try {
    if (argc != 3) {
        std::cerr << "usage: record-view CAST TEXT\n";
        return 2;
    }
    orvane::Tour tour;
    tour.play();
    orvane::write(argv[1], tour.cast());
    orvane::write(argv[2], tour.tellingScreen());
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
