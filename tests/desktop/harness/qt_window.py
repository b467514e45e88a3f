"""A window of a program that was made with another toolkit than ours."""

import sys


def main(title):
    """What runs in the other process."""
    from PyQt5.QtWidgets import QApplication, QLabel

    application = QApplication([sys.argv[0]])
    label = QLabel("Qt")
    label.setWindowTitle(title)
    label.resize(500, 300)
    label.show()
    application.exec_()


if __name__ == "__main__":
    main(sys.argv[1])
