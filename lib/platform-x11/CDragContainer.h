#pragma once
// What is being dragged onto a view: the dropped files' paths, or plain text.
#include <cstdint>
#include <string>
#include <vector>

#include "lib/views/CBaseObject.h"

namespace Vinta {

class CDragContainer : public CBaseObject {
public:
    enum ItemType : int32_t { kFile = 0, kText = 1, kError = -1 };

    // Entries of a text/uri-list: local file URIs become paths, anything else stays text.
    static CDragContainer* fromUriList(const std::string& uriList);
    CDragContainer() = default;

    int32_t getCount() const { return static_cast<int32_t>(items.size()); }
    // Null past the end (type kError).
    const char* getItem(int32_t index, int32_t& type) const;

protected:
    ~CDragContainer() override = default;

private:
    struct Item {
        std::string text;
        ItemType type;
    };
    std::vector<Item> items;
};

}  // namespace Vinta
