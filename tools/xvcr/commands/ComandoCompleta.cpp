// completa: the completion of command lines, for the shells that ask for it.
#include <memory>

#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVCompleta.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/text/XVParecido.h"

namespace {

// Both ask the program itself (XVCompleta.h); where it knows nothing, the shell offers files.
constexpr const char* k_szBash = R"(_xvcr() {
    local IFS=$'\n'
    COMPREPLY=($(xvcr completa palavras "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null))
}
complete -o default -F _xvcr xvcr
)";

constexpr const char* k_szPowerShell =
    R"(Register-ArgumentCompleter -Native -CommandName xvcr, xvcr.exe -ScriptBlock {
    param($palavra, $linha, $posicao)
    $palavras = @($linha.CommandElements | Select-Object -Skip 1 |
        Where-Object {
            $_.Extent.EndOffset -lt $posicao -or ($palavra -ne '' -and $_.Extent.StartOffset -lt $posicao)
        } |
        ForEach-Object { $_.Extent.Text })
    if ($palavra -eq '') { $palavras += '""' }
    xvcr completa palavras @palavras 2>$null | ForEach-Object {
        [System.Management.Automation.CompletionResult]::new($_, $_, 'ParameterValue', $_)
    }
}
)";

}  // namespace

void XVAdicionaCompleta(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto psShell = std::make_shared<std::string>();
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "completa", "Escreve o que completa linhas de comando no bash ou no PowerShell",
        "  xvcr completa bash > xvcr.bash\n"
        "  xvcr completa powershell > xvcr.ps1\n"
        "No bash, \"source xvcr.bash\" no ~/.bashrc; no PowerShell, \". ./xvcr.ps1\" no $PROFILE.");
    XVOpcao(*pComando, "shell", "bash|powershell", "Para quem", [psShell](std::string_view s) {
        *psShell = s;
        const std::string aNomes[] = {"bash", "powershell"};
        return s == aNomes[0] || s == aNomes[1] ? std::string()
                                                : "esperado bash ou powershell" + XVQuisDizer(s, aNomes);
    })->required();
    XVDefineAcao(pComando, rContexto, [psShell, &rContexto] {
        rContexto.saida.Escreve(*psShell == "bash" ? k_szBash : k_szPowerShell);
    });
}
