#pragma once

#include <string>
#include <vector>

/// A text and where its line begins, in dots of 600 per inch from the corner of the page.
struct PlacedText {
    int x;
    int y;
    std::string text;
};

/// The page of a table for both sides of a comparison: rows of texts with a line below each.
std::vector<PlacedText> tablePage(int firstRow, int rows, int columns);

/// The toolkit's PDF writer draws the same texts at known places, and lines below the rows.
void printWithToolkit(const char* file, int pages, int rows, int columns);
