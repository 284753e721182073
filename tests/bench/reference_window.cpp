// A minimal program with a similar window: a plain main window with a table of four columns and forty fixed
// rows, and four buttons. No file, no string table, no dialogs.
#include <QApplication>
#include <QHBoxLayout>
#include <QMainWindow>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    QMainWindow window;
    auto* const content = new QWidget(&window);
    auto* const table = new QTableWidget(40, 4, content);
    for (int row = 0; row < table->rowCount(); ++row) {
        for (int column = 0; column < table->columnCount(); ++column)
            table->setItem(row, column, new QTableWidgetItem(QString("%1, %2").arg(row).arg(column)));
    }
    auto* const buttons = new QHBoxLayout;
    for (const char* const text : {"One", "Two", "Three", "Four"})
        buttons->addWidget(new QPushButton(text, content));
    auto* const layout = new QVBoxLayout(content);
    layout->addWidget(table);
    layout->addLayout(buttons);
    window.setCentralWidget(content);
    window.resize(700, 400);
    window.show();
    return QApplication::exec();
}
