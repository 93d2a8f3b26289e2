#include "printed_table.h"

#include <QFont>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

std::vector<PlacedText> tablePage(int firstRow, int rows, int columns)
{
    std::vector<PlacedText> texts;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const int number = (firstRow + row) * 7919 + column * 104729;
            texts.push_back({500 + column * 450, 300 + row * 95,
                             std::to_string(number % 1000) + '.' + std::to_string(number % 9973)});
        }
    }
    return texts;
}

void printWithToolkit(const char* file, int pages, int rows, int columns)
{
    QPdfWriter pdf(QString::fromUtf8(file));
    pdf.setPageSize(QPageSize(QPageSize::A4));
    pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
    pdf.setResolution(600);
    QPainter painter(&pdf);
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPixelSize(67);
    painter.setFont(font);
    painter.setPen(QPen(Qt::black, 3));
    for (int page = 0; page < pages; ++page) {
        if (page > 0)
            pdf.newPage();
        for (const PlacedText& text : tablePage(page * rows, rows, columns))
            painter.drawText(QPointF(text.x, text.y + 60), QString::fromStdString(text.text));
        for (int row = 0; row < rows; ++row)
            painter.drawLine(500, 385 + row * 95, 4550, 385 + row * 95);
    }
}
