#include "platform/XVPlataforma.h"
#include "platform/XVRegistryArquivo.h"

IXVRegistry& XVPlataforma::RegistryNativo() {
    static CXVRegistryArquivo& rRegistry = *new CXVRegistryArquivo;
    return rRegistry;
}
