// zonfra-editor-host: opens the plug-in's editor through one of its doors in a window of its own,
// drives it as a host would, and can set parameters, drag with the pointer and take a screenshot.
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "tools/editor-host/EditorDoor.h"
#include "tools/editor-host/HostWindow.h"
#include "tools/editor-host/InputScript.h"

namespace {

const char* const kUsage =
    "usage: zonfra-editor-host [--door vst3|vst2|embed|vst3-no-runloop] [--plugin LIBRARY] [--scale PERCENT]\n"
    "                          [--set NAME=VALUE]... [--drag X0,Y0,X1,Y1]... [--after MS]\n"
    "                          [--screenshot FILE.png] [--print-edits]\n"
    "                          [--move X,Y | --click X,Y | --right-click X,Y | --double-click X,Y |\n"
    "                           --key KEYSYM | --type TEXT | --wait MS]...\n"
    "  NAME is a parameter's index or the name the host sees; VALUE is normalized (0..1).\n"
    "  --scale is the host's content scale (VST3 only). Input steps go out in order, 250 ms\n"
    "  apart, from a thread of their own while the host's loop turns; KEYSYM is an X key\n"
    "  name (Return, Down, Escape). The editor stays open --after ms (default 1000) after the\n"
    "  last step, then the screenshot is taken and the editor closed.\n";

struct Options {
    std::string door = "vst3";
    std::string plugin;
    double scale = 0.0;
    std::vector<std::pair<std::string, double>> settings;
    std::vector<std::vector<int>> drags;
    int after = 1000;
    std::string screenshot;
    bool printEdits = false;
    std::vector<EditorHost::InputStep> input;
};

bool parse(int argc, char** argv, Options& options) {
    if (const char* fromEnvironment = std::getenv("ZONFRA_PLUGIN")) options.plugin = fromEnvironment;
#ifdef ZONFRA_DEFAULT_PLUGIN
    if (options.plugin.empty()) options.plugin = ZONFRA_DEFAULT_PLUGIN;
#endif
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        const char* value = i + 1 < argc ? argv[i + 1] : nullptr;
        if (option == "--print-edits") {
            options.printEdits = true;
            continue;
        }
        if (!value) return false;
        ++i;
        EditorHost::InputStep step;
        if (EditorHost::parseInputStep(option, value, step)) {
            options.input.push_back(step);
            continue;
        }
        if (option == "--door") {
            options.door = value;
        } else if (option == "--plugin") {
            options.plugin = value;
        } else if (option == "--scale") {
            options.scale = std::atof(value) / 100.0;
        } else if (option == "--after") {
            options.after = std::atoi(value);
        } else if (option == "--screenshot") {
            options.screenshot = value;
        } else if (option == "--set") {
            const char* equals = std::strchr(value, '=');
            if (!equals) return false;
            options.settings.emplace_back(std::string(value, equals), std::atof(equals + 1));
        } else if (option == "--drag") {
            std::vector<int> points(4, 0);
            if (std::sscanf(value, "%d,%d,%d,%d", &points[0], &points[1], &points[2], &points[3]) != 4) return false;
            options.drags.push_back(points);
        } else {
            return false;
        }
    }
    return !options.plugin.empty();
}

int parameterNumber(EditorHost::EditorDoor& door, const std::string& name) {
    char* end = nullptr;
    const long index = std::strtol(name.c_str(), &end, 10);
    if (end && *end == 0 && !name.empty()) return static_cast<int>(index);
    return door.findParameter(name);
}

const char* kindName(EditorHost::EditKind kind) {
    return kind == EditorHost::EditKind::Begin ? "begin" : kind == EditorHost::EditKind::End ? "end" : "perform";
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (!parse(argc, argv, options)) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    auto door = EditorHost::makeDoor(options.door);
    if (!door) {
        std::fprintf(stderr, "unknown door \"%s\"\n", options.door.c_str());
        return 2;
    }
    if (!door->load(options.plugin)) {
        std::fprintf(stderr, "cannot load %s: %s\n", options.plugin.c_str(), door->error().c_str());
        return 1;
    }
    if (options.scale > 0.0 && !door->setContentScale(options.scale))
        std::fprintf(stderr, "this door has no host scale; the editor keeps its own\n");
    int width = 0, height = 0;
    if (!door->getEditorSize(width, height)) {
        std::fprintf(stderr, "the plug-in has no editor size\n");
        return 1;
    }
    EditorHost::HostWindow window(width, height);
    if (!window.valid()) {
        std::fprintf(stderr, "no X display (run under xvfb-run -a)\n");
        return 1;
    }
    if (!door->openEditor(window.getWindow())) {
        std::fprintf(stderr, "the editor did not open: %s\n", door->error().c_str());
        return 1;
    }
    for (const auto& [width2, height2] : door->takeResizeRequests()) window.resize(width2, height2);
    window.run(*door, 200);
    for (const auto& [name, value] : options.settings) {
        const int number = parameterNumber(*door, name);
        if (number < 0) {
            std::fprintf(stderr, "no parameter \"%s\"\n", name.c_str());
            continue;
        }
        door->setParameter(number, value);
    }
    for (const auto& points : options.drags) window.drag(*door, points[0], points[1], points[2], points[3]);
    if (!options.input.empty()) {
        // The host's loop goes on turning while the steps go out, as it does for a person.
        std::atomic<bool> sent{false};
        std::thread sender([&] {
            EditorHost::InputScript(window.getWindow()).run(options.input, 250);
            sent = true;
        });
        while (!sent.load()) window.run(*door, 20);
        sender.join();
    }
    window.run(*door, options.after);
    int status = 0;
    if (!options.screenshot.empty() && !window.saveScreenshot(options.screenshot)) {
        std::fprintf(stderr, "cannot write %s\n", options.screenshot.c_str());
        status = 1;
    }
    if (options.printEdits)
        for (const auto& edit : door->takeEdits())
            std::printf("%s %d %.6f\n", kindName(edit.kind), edit.parameter, edit.value);
    door->closeEditor();
    return status;
}
