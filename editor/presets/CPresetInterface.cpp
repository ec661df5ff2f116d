#include "editor/presets/CPresetInterface.h"

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>

#include "CORE/files/CFileSearch.h"
#include "CORE/files/FileNames.h"
#include "CORE/files/FileOperations.h"
#include "CORE/files/ModuleResources.h"
#include "effect/CZonfra.h"
#include "framework/presets/CPresetFormatFXP.h"
#include "framework/resources/ResourceAccess.h"

namespace ZonfraPresets {

namespace {

constexpr const char* kFactoryPrefix = "presets/";
constexpr size_t kFxpHeaderSize = 60;
constexpr const char* kIllegalName =
    "A preset name can't be empty or hold any of these characters: ^ : * . \" , / \\ [ ] ; | = < >";

std::string extension() { return Ondra::presetFormatFXP().getExtension(); }

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::string withSlashes(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

std::string directoryOf(const std::string& path) { return path.substr(0, path.find_last_of('/') + 1); }
std::string fileNameOf(const std::string& path) { return path.substr(path.find_last_of('/') + 1); }

// The name part of a path: its file name without our extension.
std::string titleOf(const std::string& path) {
    const std::string name = path.substr(path.find_last_of('/') + 1);
    const std::string ext = extension();
    return endsWith(name, ext) ? name.substr(0, name.size() - ext.size()) : name;
}

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

}  // namespace

CPresetInterface::CPresetInterface(CZonfra* owner) : plugin(owner) {}

bool CPresetInterface::fail(const std::string& text) {
    error = text;
    return false;
}

bool CPresetInterface::finished(const Done& done, bool ok) {
    if (done) done(ok);
    return ok;
}

bool CPresetInterface::isLegalName(const std::string& name) {
    if (name.empty()) return false;
    return std::all_of(name.begin(), name.end(), [](char c) { return Core::isLegalFileNameChar(c) && c != '\0'; });
}

void CPresetInterface::setFolder(const std::string& path) {
    folder = withSlashes(path);
    if (folder.empty() || folder.back() != '/') folder += '/';
    scan();
}

void CPresetInterface::chooseFolder(const std::string& path) {
    if (plugin) plugin->setPresetFolder(path);
    setFolder(path);
    currentIndex = -1;
}

void CPresetInterface::scan() {
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    const std::string current = entry(currentIndex) ? presets[static_cast<size_t>(currentIndex)].path : "";
    presets.clear();
    Core::CFileSearch top(folder, 0);
    std::string name;
    while (top.next(name)) {
        if (name.empty() || name == "/." || name == "/..") continue;
        if (name[0] != '/') {
            addEntry(folder, name, "");
            continue;
        }
        // One level of categories; deeper folders are not looked into.
        const std::string category = name.substr(1);
        const std::string sub = folder + category + "/";
        Core::CFileSearch inner(sub, 0);
        std::string fileName;
        while (inner.next(fileName))
            if (!fileName.empty() && fileName[0] != '/') addEntry(sub, fileName, category);
    }
    currentIndex = -1;
    for (int i = 0; i < count(); ++i)
        if (!current.empty() && presets[static_cast<size_t>(i)].path == current) currentIndex = i;
}

void CPresetInterface::addEntry(const std::string& directory, const std::string& fileName, const std::string& category) {
    const std::string ext = extension();
    if (fileName.size() <= ext.size() || !endsWith(fileName, ext)) return;
    presets.push_back({directory + fileName, fileName.substr(0, fileName.size() - ext.size()), category});
}

const PresetEntry* CPresetInterface::entry(int index) const {
    return index >= 0 && index < count() ? &presets[static_cast<size_t>(index)] : nullptr;
}

const char* CPresetInterface::entryName(int index) const {
    const PresetEntry* e = entry(index);
    return e ? e->name.c_str() : nullptr;
}

std::vector<int> CPresetInterface::stepOrder() const {
    std::vector<int> order;
    for (int pass = 0; pass < 2; ++pass)
        for (int i = 0; i < count(); ++i)
            if (presets[static_cast<size_t>(i)].category.empty() == (pass == 1)) order.push_back(i);
    return order;
}

bool CPresetInterface::load(int index) {
    const PresetEntry* e = entry(index);
    if (!e || !plugin) return fail("There is no such preset.");
    const PresetEntry chosen = *e;
    void* data = nullptr;
    int size = 0;
    Ondra::presetFormatFXP().read(chosen.path, &data, &size);
    const bool loaded = data && plugin->setChunk(data, size);
    Ondra::presetFormatFXP().freeData(data);
    if (!loaded)
        return fail("The preset " + quoted(chosen.name) +
                    " could not be loaded: it is damaged or belongs to another plug-in.\n(" + chosen.path + ")");
    plugin->setProgramName(chosen.name.c_str());
    currentIndex = index;
    // The folder may have changed on disk; find the same file again.
    setCurrentByName(chosen.path);
    return true;
}

bool CPresetInterface::step(int direction) {
    scan();
    const std::vector<int> order = stepOrder();
    if (order.empty()) return fail("The preset folder holds no presets.");
    const int n = static_cast<int>(order.size());
    const auto found = std::find(order.begin(), order.end(), currentIndex);
    int position = found == order.end() ? -1 : static_cast<int>(found - order.begin());
    position += direction < 0 ? -1 : 1;
    if (position < 0) position = n - 1;
    if (position >= n) position = 0;
    return load(order[static_cast<size_t>(position)]);
}

template <typename Outcome>
Outcome CPresetInterface::afterAnswer(bool needed, const std::string& title, const std::string& text,
                                      std::function<Outcome(bool yes)> then, std::function<void(Outcome)> done,
                                      Outcome waiting) {
    auto settled = std::make_shared<std::optional<Outcome>>();
    Answer finish = [settled, then = std::move(then), done = std::move(done)](bool yes) {
        *settled = then(yes);
        if (done) done(**settled);
    };
    if (!needed)
        finish(true);
    else if (!question)
        finish(false);
    else
        question(title, text, std::move(finish));
    return settled->value_or(waiting);
}

bool CPresetInterface::overwriteThen(const std::string& path, bool showPath, std::function<bool(bool yes)> then,
                                     Done done) {
    const std::string text = showPath ? "File " + quoted(fileNameOf(path)) + " alread Exists, overwrite ?\n(" + path + ")"
                                      : "Preset " + quoted(titleOf(path)) + " already exists, overwrite?";
    return afterAnswer<bool>(std::filesystem::exists(path), "Preset Exists", text, std::move(then), std::move(done),
                             false);
}

bool CPresetInterface::writeReplacing(const std::string& path, const std::function<bool(const std::string&)>& writer) {
    const std::string directory = directoryOf(path);
    std::error_code ignored;
    std::filesystem::create_directories(directory, ignored);
    std::string scratch = directory + ".zonfra-write-XXXXXX";
    if (!mkdtemp(scratch.data()))
        return fail("The preset folder cannot be written:\n" + directory + "\n(" + std::strerror(errno) + ")");
    const std::string temporary = scratch + "/" + fileNameOf(path);
    bool written = writer(temporary);
    int reason = written ? 0 : EIO;
    if (written && std::rename(temporary.c_str(), path.c_str()) != 0) {
        reason = errno;
        written = false;
    }
    std::filesystem::remove_all(scratch, ignored);
    if (!written)
        return fail("The file could not be written:\n" + path + "\n(" + std::strerror(reason) +
                    "). Nothing on disk was changed.");
    return true;
}

bool CPresetInterface::save(const std::string& path) {
    if (!plugin) return fail("There is no effect to save.");
    if (!isLegalName(titleOf(path)))
        return fail(kIllegalName);
    return writeReplacing(path, [this](const std::string& temporary) {
        // Presets leave the global limiter switch to the session.
        plugin->setWriteGlobalLimiter(0);
        void* data = nullptr;
        const int size = plugin->getChunk(&data);
        plugin->setWriteGlobalLimiter(1);
        if (!data || size <= 0) return false;
        Ondra::presetFormatFXP().write(temporary, data, size);
        // The format reports nothing; a whole file is the only proof.
        return Core::fileSize(temporary) == kFxpHeaderSize + static_cast<uint64_t>(size);
    });
}

bool CPresetInterface::saveCurrent(Done done) {
    const std::string name = plugin ? plugin->getPresetName() : "Error";
    if (!isLegalName(name))
        return finished(done, fail(kIllegalName));
    const PresetEntry* current = entry(currentIndex);
    const std::string path = current && current->name == name ? current->path : folder + name + extension();
    return overwriteThen(
        path, false,
        [this, path](bool yes) {
            if (!yes || !save(path)) return false;
            setCurrentByName(path);
            return true;
        },
        std::move(done));
}

bool CPresetInterface::saveAs(const std::string& nameOrPath, Done done) {
    std::string path = withSlashes(nameOrPath);
    if (path.find('/') == std::string::npos) path = folder + path;
    if (!endsWith(path, extension())) path += extension();
    const std::string name = titleOf(path);
    if (!isLegalName(name))
        return finished(done, fail(kIllegalName));
    return overwriteThen(
        path, true,
        [this, path, name](bool yes) {
            if (!yes) return false;
            if (plugin) plugin->setProgramName(name.c_str());
            if (!save(path)) return false;
            setCurrentByName(path);
            return true;
        },
        std::move(done));
}

bool CPresetInterface::remove(int index, Done done) {
    const PresetEntry* e = entry(index);
    if (!e) return finished(done, fail("There is no preset to delete."));
    const std::string path = e->path;
    return afterAnswer<bool>(
        true, "Warning!", "Do you really want to delete " + quoted(e->name) + " ?\n(" + path + ")",
        [this, path](bool yes) {
            if (!yes) return false;
            if (::unlink(path.c_str()) != 0)
                return fail("The preset could not be deleted:\n" + path + "\n(" + std::strerror(errno) + ")");
            scan();
            currentIndex = -1;
            return true;
        },
        std::move(done), false);
}

bool CPresetInterface::rename(const std::string& newName, Done done) {
    const PresetEntry* current = entry(currentIndex);
    if (!current) return finished(done, fail("There is no current preset to rename."));
    if (!isLegalName(newName))
        return finished(done, fail(kIllegalName));
    const std::string oldPath = current->path;
    const std::string newPath = directoryOf(oldPath) + newName + extension();
    if (newPath == oldPath) return finished(done, true);
    return overwriteThen(
        newPath, false,
        [this, oldPath, newPath, newName](bool yes) {
            if (!yes) return false;
            if (plugin) plugin->setProgramName(newName.c_str());
            if (!save(newPath)) return false;
            // The new file stands before the old one goes.
            ::unlink(oldPath.c_str());
            setCurrentByName(newPath);
            return true;
        },
        std::move(done));
}

void CPresetInterface::setCurrentByName(const std::string& path) {
    scan();
    currentIndex = -1;
    for (int i = 0; i < count(); ++i)
        if (!path.empty() && presets[static_cast<size_t>(i)].path == path) currentIndex = i;
}

int CPresetInterface::restoreFactoryPresets(std::function<void(int written)> done) {
    return afterAnswer<int>(
        true, "Warning", "This will overwrite all presets with the same name! Are you sure?",
        [this](bool yes) { return yes ? writeFactoryPresets() : -1; }, std::move(done), 0);
}

int CPresetInterface::writeFactoryPresets() {
    const Core::ModuleResource* image = Core::findModuleResource("main");
    if (!image || !Ondra::openResources(image->data, image->size)) {
        fail("The factory presets are missing from this build.");
        return -1;
    }
    int written = 0;
    std::string firstError;
    const size_t prefix = std::strlen(kFactoryPrefix);
    for (int i = 0; i < Ondra::getResourceCount(); ++i) {
        const std::string name = Ondra::getResourceName(i);
        if (name.size() <= prefix || name.compare(0, prefix, kFactoryPrefix) != 0 || endsWith(name, "/")) continue;
        // The archive's own folders below "presets/" become categories.
        const std::string target = folder + name.substr(prefix);
        if (target.find("/../") != std::string::npos) continue;
        int size = 0;
        void* data = Ondra::getResource(name.c_str(), &size);
        const bool ok = data && writeReplacing(target, [&](const std::string& temporary) {
                            return Core::writeFile(temporary, data, static_cast<size_t>(size)) == 0;
                        });
        Ondra::freeResource(data);
        if (ok)
            ++written;
        else if (firstError.empty())
            firstError = error;
    }
    Ondra::closeResources();
    const std::string current = entry(currentIndex) ? presets[static_cast<size_t>(currentIndex)].path : "";
    setCurrentByName(current);
    if (!firstError.empty()) {
        error = firstError;
        return written > 0 ? written : -1;
    }
    return written;
}

}  // namespace ZonfraPresets
