#include "documents/DocumentModel.h"

void DocumentModel::put(int& field, int value, bool relayout) {
    field = value;
    HasDocumentChanged = true;
    if (relayout && m_relayout) {
        m_relayout();
    }
}

void DocumentModel::putDocumentOrientation(int value, bool relayout) {
    put(m_orientation, value, relayout);
}
void DocumentModel::putPageHeight(int value, bool relayout) {
    put(m_pageHeight, value, relayout);
}
void DocumentModel::putPageWidth(int value, bool relayout) {
    put(m_pageWidth, value, relayout);
}
void DocumentModel::putLeftMargin(int value, bool relayout) {
    put(m_leftMargin, value, relayout);
}
void DocumentModel::putRightMargin(int value, bool relayout) {
    put(m_rightMargin, value, relayout);
}
void DocumentModel::putTopMargin(int value, bool relayout) {
    put(m_topMargin, value, relayout);
}
void DocumentModel::putBottomMargin(int value, bool relayout) {
    put(m_bottomMargin, value, relayout);
}
