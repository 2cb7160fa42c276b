#pragma once

#include <QDialog>

namespace pvardo::admin {

// Asked when a new settings file is made on a computer where the sibling
// inspection program is installed: whether to share its parcel store.
class hasVARDO final : public QDialog
{
    Q_OBJECT
public:
    explicit hasVARDO(QWidget* parent = nullptr);

    static QString questionText()
    {
        return QStringLiteral("At your discretion, you can elect to share the usage of the SBL repository "
                              "with Vardo. If you so "
                              "chose, changes you made into the SBL repository, will be shared and available "
                              "to your Vardo users.");
    }
};

} // namespace pvardo::admin
