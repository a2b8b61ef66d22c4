// The peer of fenetre_vue: the smallest window of Qt Gui.
#include <QGuiApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QRasterWindow>

#include <cstdio>

namespace {

class Fenetre : public QRasterWindow {
protected:
    void paintEvent(QPaintEvent* evenement) override {
        QPainter(this).fillRect(evenement->rect(), Qt::white);
        if (!annonce_) {
            annonce_ = true;
            std::puts("peint");
            std::fflush(stdout);
        }
    }

private:
    bool annonce_ = false;
};

} // namespace

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    Fenetre fenetre;
    fenetre.setTitle(QStringLiteral("peer"));
    fenetre.resize(320, 200);
    fenetre.show();
    return QGuiApplication::exec();
}
