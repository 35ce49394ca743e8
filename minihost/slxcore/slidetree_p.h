// SPDX-License-Identifier: MIT
// The shapes of one slide part: listing them (group members included, with their position on
// the slide), their geometry in points, new text boxes, and whether a frame follows its text.
#pragma once

#include <QString>
#include <pugixml.hpp>
#include <unordered_map>
#include <vector>

namespace minihost {

constexpr double kEmuPerPoint = 12700.0;

// Maps a shape's own coordinates (EMU) to the slide's: slide = offset + own * scale.
struct Placement {
    double offsetX = 0, offsetY = 0, scaleX = 1, scaleY = 1;
};

struct ShapeNode {
    pugi::xml_node element;  // p:sp, p:pic, p:graphicFrame, p:cxnSp or p:grpSp
    int id = 0;              // p:cNvPr/@id, unique within the part
    Placement placement;     // of the group holding it (identity at the top level)
};

// The slide's spTree (an empty node when the part has none).
pugi::xml_node shapeTree(const pugi::xml_document& slide);
// Every shape in document (z) order; a group comes before its members. Shapes inside
// mc:AlternateContent are not listed (they are kept untouched). Groups are walked with a stack
// of their own, so no nesting of them can exhaust the program's.
std::vector<ShapeNode> listShapes(pugi::xml_node tree);

// The shapes of one slide part, found by id and added to, each in constant time however many
// shapes the slide holds. What it knows of the part is read when first needed; forget() it when
// shapes were removed or the part's XML was replaced.
class SlideShapes {
public:
    // The first shape in z order with id `id` in `slide`, or one with an empty element.
    ShapeNode find(const pugi::xml_document& slide, int id);
    // Appends a text box on top of the others (before the tree's extension list, which must stay
    // last): txBox="1", the box in EMU, one empty paragraph. Its id is one more than the largest
    // numeric id anywhere in the part (attributes named "id"), at most 2147483647. Returns its
    // element, or an empty one when the part has no shape tree.
    pugi::xml_node addTextbox(pugi::xml_document& slide, float left, float top, float width,
                              float height);
    // An id for a new shape that the caller adds to the part itself (then forget()), as
    // addTextbox() numbers its boxes: each call gives the next one.
    int takeId(const pugi::xml_document& slide);
    // A shape the caller added to the part (with its members, for a group), or is about to
    // remove from it: known, or forgotten, at once rather than the whole part read again (it is,
    // when ids are repeated, or the shape removed has the largest id: the next new shape then
    // takes the largest id left plus one, as after reading the part).
    void added(pugi::xml_node shape);
    void removed(pugi::xml_node shape);
    void forget();

private:
    void build(const pugi::xml_document& slide);

    bool m_built = false;
    bool m_repeatedIds = false;  // some id names two shapes
    std::unordered_map<int, pugi::xml_node> m_byId;
    pugi::xml_node m_extensions;  // the tree's first extLst, before which new shapes go
    long long m_nextId = 0;
};

QString shapeName(pugi::xml_node element);
// p:cNvPr/@id of a shape's element (0 when it has none).
int shapeIdOf(pugi::xml_node element);
// "text box", "placeholder", "shape", "picture", "table or chart", "connector", "group".
QString shapeKind(pugi::xml_node element);
// The text body (p:txBody) of a p:sp, or an empty node.
pugi::xml_node textBodyOf(pugi::xml_node element);

struct Box {
    float left = 0, top = 0, width = 0, height = 0;  // points, on the slide
    bool known = false;                              // false when the shape inherits its place
};
Box geometry(const ShapeNode& shape);
void setWidth(const ShapeNode& shape, float points);
// Moves the shape's top left corner to (`left`, `top`) on the slide (its group's scale undone).
void setPosition(const ShapeNode& shape, float left, float top);
// The a:xfrm of a shape (in p:spPr or p:grpSpPr, or p:xfrm of a graphic frame), or an empty node.
pugi::xml_node transformOf(pugi::xml_node element);
// p:nvSpPr, p:nvPicPr, ...: the shape's non-visual properties, or an empty node.
pugi::xml_node nonVisual(pugi::xml_node element);
void setHeight(const ShapeNode& shape, float points);

// Whether the shape follows its text (a:spAutoFit), and switching it.
bool followsText(pugi::xml_node txBody);
void setFollowsText(pugi::xml_node txBody, bool on);

}  // namespace minihost
