// Linked into the plug-in, this gives every effect its editor; tools and tests that link the effect
// without the GUI run without one.
#include "editor/CZonfraEditor.h"
#include "effect/CZonfra.h"

namespace {

Ondra::PluginEditor* makeEditor(CZonfra& effect) { return new CZonfraEditor(&effect); }

[[maybe_unused]] const bool registered = (CZonfra::editorFactory = makeEditor, true);

}  // namespace
