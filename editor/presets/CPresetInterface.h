#pragma once
// The editor's view of the user's preset folder: FXP files at the top level and one level of
// sub-folders as categories, the current preset, and the file operations. No GUI: questions go
// through a callback that may answer later (a dialog while the host's loop goes on), so the
// operations that ask finish through `done`; failures come back as a text for the editor to show.
#include <functional>
#include <string>
#include <vector>

class CZonfra;

namespace ZonfraPresets {

struct PresetEntry {
    std::string path;      // whole path, "/" separators
    std::string name;      // file name without folder and extension
    std::string category;  // sub-folder name; empty at the top level
};

class CPresetInterface {
public:
    // Yes/no question with a title; `answer` gets true for yes, now or later, or never when the
    // question is dropped (the editor closed). Without one every question answers no, so nothing
    // on disk is replaced unasked.
    using Answer = std::function<void(bool yes)>;
    using Question = std::function<void(const std::string& title, const std::string& text, Answer answer)>;
    // The outcome of an operation that may ask first. Each such operation also answers that
    // outcome when no question kept it waiting, and false while one does.
    using Done = std::function<void(bool ok)>;

    explicit CPresetInterface(CZonfra* plugin);

    void setQuestion(Question ask) { question = std::move(ask); }
    // Normalises the separators, ensures the trailing "/", creates the folder if it can, scans.
    void setFolder(const std::string& path);
    const std::string& getFolder() const { return folder; }
    // Makes `path` the effect's preset folder (remembered in the settings) and reads it.
    void chooseFolder(const std::string& path);

    void scan();
    int count() const { return static_cast<int>(presets.size()); }
    // Null out of range.
    const PresetEntry* entry(int index) const;
    const char* entryName(int index) const;
    int getCurrentIndex() const { return currentIndex; }
    // Categorised entries first, then the top level, each in listing order.
    std::vector<int> stepOrder() const;

    // Reads the file into the effect and makes it current. A file that is not our preset changes
    // nothing and gives false with the reason in lastError().
    bool load(int index);
    // Scans, moves by `direction` (-1 or +1) through the step order with wrap-around and loads.
    bool step(int direction);

    // "Save Preset": the effect's preset name; the current file when the names match, else a
    // new file in the folder; asks before replacing a file.
    bool saveCurrent(Done done = {});
    // "Save Preset as": a bare name goes into the folder, a path is taken as it stands; the
    // extension is added when missing.
    bool saveAs(const std::string& nameOrPath, Done done = {});
    // Writes the effect's state to `path` by way of a temporary file renamed over it.
    bool save(const std::string& path);
    // Asks, deletes, rescans; the current index becomes -1.
    bool remove(int index, Done done = {});
    // The current preset under a new name in the same folder; the old file goes.
    bool rename(const std::string& newName, Done done = {});
    // The entry with this path becomes current after a scan; -1 when none (or an empty path).
    void setCurrentByName(const std::string& path);
    // Asks once, then writes the main archive's "presets/" files into the folder. The number of
    // files written, or -1 when refused or nothing could be written; 0 while the question waits.
    int restoreFactoryPresets(std::function<void(int written)> done = {});

    // Non-empty and free of the characters file names can't hold.
    static bool isLegalName(const std::string& name);
    const std::string& lastError() const { return error; }

private:
    bool fail(const std::string& text);
    // Hands an outcome reached without asking to `done`, and answers it.
    static bool finished(const Done& done, bool ok);
    int writeFactoryPresets();
    // Asks when `needed` (else counts as yes), then `then` runs with the answer and its outcome
    // goes to `done`; answers that outcome when it came before returning, else `waiting`.
    template <typename Outcome>
    Outcome afterAnswer(bool needed, const std::string& title, const std::string& text,
                        std::function<Outcome(bool yes)> then, std::function<void(Outcome)> done, Outcome waiting);
    // Replaces `path` after asking when it exists.
    bool overwriteThen(const std::string& path, bool showPath, std::function<bool(bool yes)> then, Done done);
    void addEntry(const std::string& directory, const std::string& fileName, const std::string& category);
    // Writes through a hidden folder beside the target and renames, so the target is replaced
    // whole or not at all. `writer` fills the temporary path and says whether it succeeded.
    bool writeReplacing(const std::string& path, const std::function<bool(const std::string&)>& writer);

    CZonfra* plugin;
    std::string folder;
    std::vector<PresetEntry> presets;
    int currentIndex = -1;
    Question question;
    std::string error;
};

}  // namespace ZonfraPresets
