// SPDX-License-Identifier: MIT
// The shapes of one slide part: listing them (group members included, with their position on
// the slide), their geometry in points, new text boxes, and the height of a frame that follows
// its text.
#pragma once

#include <QString>
#include <pugixml.hpp>
#include <vector>

#include "minihost/slxcore/runformat_p.h"

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
// mc:AlternateContent are not listed (they are kept untouched).
std::vector<ShapeNode> listShapes(pugi::xml_node tree);
// The shape with id `id`, or one with an empty element.
ShapeNode findShape(pugi::xml_node tree, int id);

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

// One more than the largest numeric id anywhere in the part.
int nextShapeId(const pugi::xml_document& slide);
// Appends a text box on top of the others: a fresh id, txBox="1", the box in EMU, one empty
// paragraph. Returns its element.
pugi::xml_node addTextbox(pugi::xml_document& slide, float left, float top, float width,
                          float height);

// Whether the shape follows its text (a:spAutoFit), and switching it.
bool followsText(pugi::xml_node txBody);
void setFollowsText(pugi::xml_node txBody, bool on);
// Resizes a shape that follows its text to an estimate of the text's extent: lines of 1.2 times
// the font size plus the insets; with wrap="none" the width follows the longest line too.
void fitToText(const ShapeNode& shape, const DeckStyles& styles);

}  // namespace minihost
