#include "support/trace/XVCapturaTrace.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace {
constexpr std::ptrdiff_t k_iMaximoFalhas = 4096;
thread_local CXVCapturaTrace* g_pCapturaAtual = nullptr;
}  // namespace

CXVCapturaTrace::CXVCapturaTrace(bool bSomenteCaptura)
    : m_pAnterior(g_pCapturaAtual), m_bSomenteCaptura(bSomenteCaptura) {
    g_pCapturaAtual = this;
}

CXVCapturaTrace::~CXVCapturaTrace() {
    g_pCapturaAtual = m_pAnterior;
}

CXVCapturaTrace* CXVCapturaTrace::GetAtual() {
    return g_pCapturaAtual;
}

void CXVCapturaTrace::Inclui(SFalhaCapturada falha) {
    if (std::ssize(m_listaFalhas) == k_iMaximoFalhas)
        m_listaFalhas.erase(m_listaFalhas.begin(), m_listaFalhas.begin() + k_iMaximoFalhas / 2);
    m_listaFalhas.push_back(std::move(falha));
}

bool CXVCapturaTrace::Contem(const std::string& sExpressao) const {
    return std::any_of(m_listaFalhas.begin(), m_listaFalhas.end(),
                       [&](const SFalhaCapturada& r) { return r.sExpressao == sExpressao; });
}
