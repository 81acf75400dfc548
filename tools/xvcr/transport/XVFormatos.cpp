#include "tools/xvcr/transport/XVFormatos.h"

std::unique_ptr<IXVFormatoExportacao> XVCriaFormato(EFormatoExportacao eFormato, bool bTextos) {
    switch (eFormato) {
        case EFormatoExportacao::eCsv:
            return std::make_unique<CXVFormatoCsv>(bTextos);
        case EFormatoExportacao::eSql:
            return std::make_unique<CXVFormatoSql>(bTextos);
        case EFormatoExportacao::eJsonLines:
            break;
    }
    return std::make_unique<CXVFormatoLinhas>();
}
