#include <QGuiApplication>

// Opens the display and leaves it.
int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    return 0;
}
