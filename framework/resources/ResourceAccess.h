#pragma once

// One archive open at a time for the whole process: open, take files, give them back, close.
// Main thread (or library load) only; there is no lock.
#include <cstddef>

namespace Ondra {

// A "RESOURCE2" image is used in place and must stay valid until `closeResources`; anything
// else is read as the older form from a copy. False when the image is refused.
bool openResources(const void* data, size_t size);
// Null, and size 0, for a null or unknown name.
void* getResource(const char* name, int* size);
// A block not given out by the open archive is ignored.
void freeResource(void* block);
// Frees everything, blocks not given back included.
void closeResources();
// -1 when nothing is open.
int getResourceCount();
const char* getResourceName(int index);

}  // namespace Ondra
