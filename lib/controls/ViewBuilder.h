#pragma once
// Builds a view from its record and puts it into the tree.
namespace Vinta {

class CFrame;
class CView;
class CViewContainer;
class Vinta_ObjectConstructorInfoBase;

// The view goes into `container`, or into `frame` when no container is given. The record's
// `object` is the view, or null when the kind builds nothing.
CView* addViewFromRecord(Vinta_ObjectConstructorInfoBase* record, CViewContainer* container, CFrame* frame);

} // namespace Vinta
