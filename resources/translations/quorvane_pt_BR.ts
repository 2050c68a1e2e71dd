<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR" sourcelanguage="en_US">
<context>
    <name>HotKeyTable</name>
    <message>
        <source>Down arrow</source>
        <translation>Seta para baixo</translation>
    </message>
    <message>
        <source>Left arrow</source>
        <translation>Seta para a esquerda</translation>
    </message>
    <message>
        <source>Right arrow</source>
        <translation>Seta para a direita</translation>
    </message>
    <message>
        <source>Up arrow</source>
        <translation>Seta para cima</translation>
    </message>
    <message>
        <source>Cmd + %1</source>
        <translation>Cmd + %1</translation>
    </message>
    <message>
        <source>Ctrl + %1</source>
        <translation>Ctrl + %1</translation>
    </message>
    <message>
        <source>Shift + %1</source>
        <translation>Shift + %1</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Nenhuma</translation>
    </message>
</context>
<context>
    <name>Reachability</name>
    <message>
        <source>Cellular</source>
        <translation>Rede móvel</translation>
    </message>
    <message>
        <source>WiFi</source>
        <translation>Wi-Fi</translation>
    </message>
    <message>
        <source>No Connection</source>
        <translation>Sem conexão</translation>
    </message>
</context>
<context>
    <name>Start</name>
    <message>
        <source>The program&apos;s files are not safe.</source>
        <translation>Os arquivos do programa não são seguros.</translation>
    </message>
    <message>
        <source>Another user can change &quot;%1&quot;. It would be run with administrator rights. Please install the program again.</source>
        <translation>Outro usuário pode alterar “%1”, que seria executado com direitos de administrador. Instale o programa novamente.</translation>
    </message>
</context>
<context>
    <name>quorvane::About</name>
    <message>
        <source>About Quorvane</source>
        <translation>Sobre o Quorvane</translation>
    </message>
    <message>
        <source>Quorvane&apos;s icon</source>
        <translation>Ícone do Quorvane</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Versão</translation>
    </message>
    <message>
        <source>Hides your IP address behind one that you were lent.</source>
        <translation>Oculta seu endereço IP atrás de um emprestado.</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Nosso site</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Copy Diagnostics</source>
        <translation>Copiar diagnóstico</translation>
    </message>
    <message>
        <source>Copies versions, settings and the ends of the logs, without names, passwords and addresses</source>
        <translation>Copia versões, configurações e o fim dos registros, sem nomes, senhas nem endereços</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Ajuda</translation>
    </message>
    <message>
        <source>Opens the guide in your browser; F1 does so in every window</source>
        <translation>Abre o guia no navegador; F1 faz isso em todas as janelas</translation>
    </message>
</context>
<context>
    <name>quorvane::AuthenticaionView</name>
    <message>
        <source>Quorvane - Administrator</source>
        <translation>Quorvane - Administrador</translation>
    </message>
    <message>
        <source>Quorvane needs administrator rights</source>
        <translation>O Quorvane precisa de direitos de administrador</translation>
    </message>
    <message>
        <source>They start and stop OpenVPN and set the DNS servers. Enter the name and the password of an administrator of this computer.</source>
        <translation>Eles servem para iniciar e encerrar o OpenVPN e definir os servidores DNS. Digite o nome e a senha de um administrador deste computador.</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Nome:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Nome de usuário</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Senha:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Senha</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Iniciar</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandLine</name>
    <message>
        <source>Exactly one command is needed.</source>
        <translation>É necessário exatamente um comando.</translation>
    </message>
    <message>
        <source>Unexpected argument &quot;%1&quot;.</source>
        <translation>Argumento inesperado “%1”.</translation>
    </message>
    <message>
        <source>--json belongs to --status and --locations.</source>
        <translation>--json é usado com --status e --locations.</translation>
    </message>
    <message>
        <source>--follow belongs to --status.</source>
        <translation>--follow é usado com --status.</translation>
    </message>
    <message>
        <source>Controls the running copy of Quorvane. Without options, starts it.</source>
        <translation>Controla a cópia do Quorvane em execução. Sem opções, inicia o programa.</translation>
    </message>
    <message>
        <source>For --hide: a title that --locations lists.</source>
        <translation>Para --hide: um título listado por --locations.</translation>
    </message>
    <message>
        <source>Hide the IP, and print the lent one.</source>
        <translation>Ocultar o IP e mostrar o emprestado.</translation>
    </message>
    <message>
        <source>Stop hiding the IP.</source>
        <translation>Parar de ocultar o IP.</translation>
    </message>
    <message>
        <source>Change to an IP of a random location, and print it.</source>
        <translation>Trocar para um IP de um local aleatório e mostrá-lo.</translation>
    </message>
    <message>
        <source>Never use the present IP again; change it, and print the new one.</source>
        <translation>Nunca mais usar o IP atual; trocá-lo e mostrar o novo.</translation>
    </message>
    <message>
        <source>Print what is hidden.</source>
        <translation>Mostrar o que está oculto.</translation>
    </message>
    <message>
        <source>Print the locations, one on each line.</source>
        <translation>Mostrar os locais, um por linha.</translation>
    </message>
    <message>
        <source>Show the window.</source>
        <translation>Mostrar a janela.</translation>
    </message>
    <message>
        <source>Quit Quorvane.</source>
        <translation>Sair do Quorvane.</translation>
    </message>
    <message>
        <source>With --status or --locations: print JSON.</source>
        <translation>Com --status ou --locations: escrever JSON.</translation>
    </message>
    <message>
        <source>With --status: print each change, until Quorvane quits.</source>
        <translation>Com --status: mostrar cada mudança até o Quorvane ser encerrado.</translation>
    </message>
    <message>
        <source>Lift the network lock, without a running copy.</source>
        <translation>Remover o bloqueio de rede, sem uma cópia em execução.</translation>
    </message>
    <message>
        <source>Print the version.</source>
        <translation>Mostrar a versão.</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandRunner</name>
    <message>
        <source>Quorvane is not running, and there is no display to start it on.</source>
        <translation>O Quorvane não está em execução e não há uma tela onde iniciá-lo.</translation>
    </message>
    <message>
        <source>Quorvane could not be started.</source>
        <translation>Não foi possível iniciar o Quorvane.</translation>
    </message>
    <message>
        <source>Quorvane&apos;s window asks for an administrator&apos;s name and password.</source>
        <translation>A janela do Quorvane pede o nome e a senha de um administrador.</translation>
    </message>
    <message>
        <source>Quorvane is not running.</source>
        <translation>O Quorvane não está em execução.</translation>
    </message>
    <message>
        <source>Hidden behind %1 (%2). The real IP is %3.</source>
        <translation>Oculto atrás de %1 (%2). O IP real é %3.</translation>
    </message>
    <message>
        <source>Searching for an available IP (%1).</source>
        <translation>Procurando um IP disponível (%1).</translation>
    </message>
    <message>
        <source>Starting: the service has not answered yet.</source>
        <translation>Iniciando: o serviço ainda não respondeu.</translation>
    </message>
    <message>
        <source>Not hidden: %1.</source>
        <translation>Não oculto: %1.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>O tráfego fora do túnel está bloqueado.</translation>
    </message>
</context>
<context>
    <name>quorvane::DisplayState</name>
    <message>
        <source>Stop Hiding IP</source>
        <translation>Parar de ocultar o IP</translation>
    </message>
    <message>
        <source>WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!</source>
        <translation>ATENÇÃO! SEU IP REAL NÃO ESTÁ OCULTO NO MOMENTO!</translation>
    </message>
    <message>
        <source>Searching for an available IP...</source>
        <translation>Procurando um IP disponível…</translation>
    </message>
    <message>
        <source>You are currently hiding your real IP %1</source>
        <translation>Seu IP real %1 está oculto no momento</translation>
    </message>
    <message>
        <source>Every location has been used in this rotation. Refresh the locations or switch &quot;US only&quot; to begin a new one.</source>
        <translation>Todos os locais foram usados nesta rotação. Atualize os locais ou alterne “Somente EUA” para começar uma nova.</translation>
    </message>
    <message>
        <source>There is no VPN configuration to connect with. Choose a location to get a new one.</source>
        <translation>Não há configuração de VPN para conectar. Escolha um local para obter uma nova.</translation>
    </message>
    <message>
        <source>Locations can be refreshed while your IP is not hidden.</source>
        <translation>Os locais podem ser atualizados enquanto seu IP não estiver oculto.</translation>
    </message>
    <message>
        <source>No answer through the tunnel yet</source>
        <translation>Ainda sem resposta pelo túnel</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>O tráfego fora do túnel está bloqueado.</translation>
    </message>
    <message>
        <source>Cannot be pressed at the moment</source>
        <translation>Não pode ser pressionado no momento</translation>
    </message>
    <message>
        <source>Stops hiding your real IP</source>
        <translation>Para de ocultar seu IP real</translation>
    </message>
    <message>
        <source>Hides your real IP</source>
        <translation>Oculta seu IP real</translation>
    </message>
    <message>
        <source>Step 1 of 3: checking the administrator</source>
        <translation>Etapa 1 de 3: verificando o administrador</translation>
    </message>
    <message>
        <source>Step 2 of 3: getting a configuration</source>
        <translation>Etapa 2 de 3: obtendo uma configuração</translation>
    </message>
    <message>
        <source>Step 3 of 3: starting the tunnel</source>
        <translation>Etapa 3 de 3: iniciando o túnel</translation>
    </message>
    <message>
        <source>Choose a location, then press Quorvane.</source>
        <translation>Escolha um local e clique em Quorvane.</translation>
    </message>
</context>
<context>
    <name>quorvane::HideIpSession</name>
    <message>
        <source>No Internet connection detected, please check your Internet settings.
</source>
        <translation>Nenhuma conexão com a Internet foi detectada; verifique suas configurações de Internet.
</translation>
    </message>
    <message>
        <source>No available server detected.
</source>
        <translation>Nenhum servidor disponível foi detectado.
</translation>
    </message>
    <message>
        <source>Location is not available.</source>
        <translation>O local não está disponível.</translation>
    </message>
    <message>
        <source>Please try a different location.</source>
        <translation>Tente um local diferente.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erro</translation>
    </message>
    <message>
        <source>There was a problem connecting to the Quorvane server, please check your Internet connection or firewall settings.</source>
        <translation>Houve um problema ao conectar ao servidor do Quorvane; verifique sua conexão com a Internet ou as configurações do firewall.</translation>
    </message>
    <message>
        <source>Your real IP is visible</source>
        <translation>Seu IP real está visível</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel could not be blocked, so your IP is not hidden.</source>
        <translation>Não foi possível bloquear o tráfego fora do túnel, portanto seu IP não está oculto.</translation>
    </message>
    <message>
        <source>The block of traffic outside the tunnel could not be lifted.</source>
        <translation>Não foi possível remover o bloqueio do tráfego fora do túnel.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked</source>
        <translation>O tráfego fora do túnel ainda está bloqueado</translation>
    </message>
    <message>
        <source>Type &quot;quorvane --unlock&quot; in a terminal to lift the block.</source>
        <translation>Digite “quorvane --unlock” em um terminal para remover o bloqueio.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked since Quorvane last ran.</source>
        <translation>O tráfego fora do túnel ainda está bloqueado desde a última execução do Quorvane.</translation>
    </message>
    <message>
        <source>It has ended without lifting the block. Your IP is not hidden.</source>
        <translation>Ele foi encerrado sem remover o bloqueio. Seu IP não está oculto.</translation>
    </message>
    <message>
        <source>Lift the Block</source>
        <translation>Remover o bloqueio</translation>
    </message>
    <message>
        <source>Hide My IP</source>
        <translation>Ocultar meu IP</translation>
    </message>
    <message>
        <source>Your IP was changed</source>
        <translation>Seu IP foi alterado</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
</context>
<context>
    <name>quorvane::HotKeysPane</name>
    <message>
        <source>Selected hot key is already being used by another action.</source>
        <translation>A tecla de atalho selecionada já é usada por outra ação.</translation>
    </message>
    <message>
        <source>Another program uses this combination.</source>
        <translation>Outro programa usa esta combinação.</translation>
    </message>
    <message>
        <source>Belongs to &quot;%1&quot; until Quorvane quits.</source>
        <translation>Pertence a “%1” até o Quorvane ser encerrado.</translation>
    </message>
    <message>
        <source>This keyboard has no such key.</source>
        <translation>Este teclado não tem essa tecla.</translation>
    </message>
    <message>
        <source>The desktop declined this combination.</source>
        <translation>A área de trabalho recusou esta combinação.</translation>
    </message>
    <message>
        <source>These work while any program is in front. A combination that you replace stays in force until Quorvane quits.</source>
        <translation>Funcionam com qualquer programa em primeiro plano. Uma combinação substituída continua valendo até o Quorvane ser encerrado.</translation>
    </message>
    <message>
        <source>This desktop offers no global hot keys: these combinations have no effect.</source>
        <translation>Esta área de trabalho não oferece teclas de atalho globais: estas combinações não têm efeito.</translation>
    </message>
    <message>
        <source>Its settings can bind keys to commands: %1</source>
        <translation>As configurações dela podem associar teclas a comandos: %1</translation>
    </message>
</context>
<context>
    <name>quorvane::IpAddressesPane</name>
    <message numerus="yes">
        <source>&amp;minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>&amp;minuto</numerusform>
            <numerusform>&amp;minutos</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::LocationList</name>
    <message>
        <source>This location is full.</source>
        <translation>Este local está cheio.</translation>
    </message>
    <message>
        <source>%1, full</source>
        <translation>%1, cheio</translation>
    </message>
    <message>
        <source>Random Location</source>
        <translation>Local aleatório</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenu</name>
    <message>
        <source>Location</source>
        <translation>Local</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Outros</translation>
    </message>
    <message>
        <source>More locations are in the window</source>
        <translation>Há mais locais na janela</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenuItem</name>
    <message>
        <source>Country flag</source>
        <translation>Bandeira do país</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Local</translation>
    </message>
    <message>
        <source>Full mark</source>
        <translation>Marca de “cheio”</translation>
    </message>
</context>
<context>
    <name>quorvane::LossReason</name>
    <message>
        <source>The tunnel was lost: the VPN server does not answer.</source>
        <translation>O túnel foi perdido: o servidor VPN não responde.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN has ended.</source>
        <translation>O túnel foi perdido: o OpenVPN terminou.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN was killed.</source>
        <translation>O túnel foi perdido: o OpenVPN foi encerrado à força.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its network device is gone.</source>
        <translation>O túnel foi perdido: seu dispositivo de rede sumiu.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its routes were changed.</source>
        <translation>O túnel foi perdido: suas rotas foram alteradas.</translation>
    </message>
</context>
<context>
    <name>quorvane::MainWindow</name>
    <message>
        <source>State picture</source>
        <translation>Imagem do estado</translation>
    </message>
    <message>
        <source>Status line</source>
        <translation>Linha de status</translation>
    </message>
    <message>
        <source>Current IP address</source>
        <translation>Endereço IP atual</translation>
    </message>
    <message>
        <source>Country flag</source>
        <translation>Bandeira do país</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>Local:</translation>
    </message>
    <message>
        <source>Location label</source>
        <translation>Rótulo do local</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Local</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>Aviso</translation>
    </message>
    <message>
        <source>Second notice</source>
        <translation>Segundo aviso</translation>
    </message>
    <message>
        <source>Asking the service</source>
        <translation>Consultando o serviço</translation>
    </message>
    <message>
        <source>&amp;Change IP</source>
        <translation>&amp;Trocar IP</translation>
    </message>
    <message>
        <source>Change IP</source>
        <translation>Trocar IP</translation>
    </message>
    <message>
        <source>&amp;Discard IP</source>
        <translation>&amp;Descartar IP</translation>
    </message>
    <message>
        <source>Discard IP</source>
        <translation>Descartar IP</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>Trocar &amp;IP a cada</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Minutos entre as trocas de IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Minutos, ajuste gradual</translation>
    </message>
    <message>
        <source>&amp;US only</source>
        <translation>&amp;Somente EUA</translation>
    </message>
    <message>
        <source>Do not &amp;repeat IPs</source>
        <translation>&amp;Não repetir IPs</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>&amp;Configurações</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Configurações</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Nosso site</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>Sobre o Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Sair do Quorvane</translation>
    </message>
    <message>
        <source>Flag: %1</source>
        <translation>Bandeira: %1</translation>
    </message>
    <message>
        <source>IP hidden</source>
        <translation>IP oculto</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Procurando</translation>
    </message>
    <message>
        <source>IP not hidden</source>
        <translation>IP não oculto</translation>
    </message>
    <message>
        <source>Address notice</source>
        <translation>Aviso sobre o endereço</translation>
    </message>
    <message>
        <source>Notice of the block</source>
        <translation>Aviso sobre o bloqueio</translation>
    </message>
    <message>
        <source>Lift the &amp;Block</source>
        <translation>Remover o &amp;bloqueio</translation>
    </message>
    <message>
        <source>Lift the block of traffic outside the tunnel</source>
        <translation>Remover o bloqueio do tráfego fora do túnel</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progresso</translation>
    </message>
    <message>
        <source>%1 (%2 s)</source>
        <translation>%1 (%2 s)</translation>
    </message>
    <message>
        <source>R&amp;otation</source>
        <translation>&amp;Rotação</translation>
    </message>
    <message>
        <source>Shows or hides the controls of the rotation</source>
        <translation>Mostra ou oculta os controles da rotação</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Sair</translation>
    </message>
    <message numerus="yes">
        <source>minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>minuto</numerusform>
            <numerusform>minutos</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::NetworkLock</name>
    <message>
        <source>The address of the Quorvane server was not found.</source>
        <translation>O endereço do servidor do Quorvane não foi encontrado.</translation>
    </message>
    <message>
        <source>The administrator&apos;s name and password are not known.</source>
        <translation>O nome e a senha do administrador não são conhecidos.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAboutWindowController</name>
    <message>
        <source>%1 built %2</source>
        <translation>%1, compilada em %2</translation>
    </message>
    <message>
        <source>Diagnostics Copied</source>
        <translation>Diagnóstico copiado</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvApplicationController</name>
    <message>
        <source>Quorvane is already running.</source>
        <translation>O Quorvane já está em execução.</translation>
    </message>
    <message>
        <source>There is already a copy of Quorvane running. This copy cannot be opened until that instance is quit.</source>
        <translation>Já existe uma cópia do Quorvane em execução. Esta cópia não pode ser aberta até que a outra seja encerrada.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAuthenticationWindowController</name>
    <message>
        <source>You input wrong user name or password.
</source>
        <translation>O nome de usuário ou a senha estão incorretos.
</translation>
    </message>
    <message>
        <source>The administrator&apos;s account asks for more than its password: &quot;%1&quot;</source>
        <translation>A conta do administrador pede mais do que a senha: “%1”</translation>
    </message>
    <message>
        <source>Quorvane can answer the question for the password only. The password was not used for any other question.</source>
        <translation>O Quorvane só pode responder ao pedido da senha. A senha não foi usada em nenhuma outra pergunta.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvDiscardIpTableViewController</name>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Endereços IP descartados</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvLocationPaneController</name>
    <message>
        <source>Always Use Same IP &amp;Address</source>
        <translation>&amp;Usar sempre o mesmo endereço IP</translation>
    </message>
    <message>
        <source>Location choice</source>
        <translation>Escolha do local</translation>
    </message>
    <message>
        <source>Please check &quot;Always Use Same IP Address&quot; when you have found a fake IP you would like to reuse</source>
        <translation>Marque “Usar sempre o mesmo endereço IP” quando encontrar um IP emprestado que queira reutilizar</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvMainWindowController</name>
    <message>
        <source>%1 (ver.%2)</source>
        <translation>%1 (ver.%2)</translation>
    </message>
    <message>
        <source>The name servers can be put back while your IP is not hidden.</source>
        <translation>Os servidores de nomes podem ser restaurados enquanto seu IP não estiver oculto.</translation>
    </message>
    <message>
        <source>The name servers could not be put back.</source>
        <translation>Não foi possível restaurar os servidores de nomes.</translation>
    </message>
</context>
<context>
    <name>quorvane::SessionControl</name>
    <message>
        <source>Quorvane was quit.</source>
        <translation>O Quorvane foi encerrado.</translation>
    </message>
    <message>
        <source>There is no location &quot;%1&quot;.</source>
        <translation>Não existe o local “%1”.</translation>
    </message>
    <message>
        <source>Your IP is not hidden.</source>
        <translation>Seu IP não está oculto.</translation>
    </message>
    <message>
        <source>No IP could be hidden.</source>
        <translation>Não foi possível ocultar nenhum IP.</translation>
    </message>
    <message>
        <source>No administrator&apos;s name and password were given.</source>
        <translation>O nome e a senha de um administrador não foram informados.</translation>
    </message>
    <message>
        <source>The service has not answered yet.</source>
        <translation>O serviço ainda não respondeu.</translation>
    </message>
</context>
<context>
    <name>quorvane::Settings</name>
    <message>
        <source>Quorvane Settings</source>
        <translation>Configurações do Quorvane</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>Painéis</translation>
    </message>
    <message>
        <source>Our &amp;Website</source>
        <translation>&amp;Nosso site</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Nosso site</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Cancelar</translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation>&amp;Aplicar</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsAdvanced</name>
    <message>
        <source>User agent:</source>
        <translation>User agent:</translation>
    </message>
    <message>
        <source>Leave &amp;the browser&apos;s own user agent</source>
        <translation>&amp;Manter o user agent do navegador</translation>
    </message>
    <message>
        <source>&amp;Use this user agent:</source>
        <translation>&amp;Usar este user agent:</translation>
    </message>
    <message>
        <source>User agent</source>
        <translation>User agent</translation>
    </message>
    <message>
        <source>Choose a user agent</source>
        <translation>Escolher um user agent</translation>
    </message>
    <message>
        <source>&amp;Hide my referrer header</source>
        <translation>Ocultar meu cabeçalho &amp;Referer</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsBrowsers</name>
    <message>
        <source>Browsers:</source>
        <translation>Navegadores:</translation>
    </message>
    <message>
        <source>&amp;Safari</source>
        <translation>&amp;Safari</translation>
    </message>
    <message>
        <source>&amp;Firefox</source>
        <translation>&amp;Firefox</translation>
    </message>
    <message>
        <source>O&amp;pera</source>
        <translation>O&amp;pera</translation>
    </message>
    <message>
        <source>C&amp;hrome</source>
        <translation>C&amp;hrome</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsCookieCrumble</name>
    <message>
        <source>&amp;Hide my cookie headers</source>
        <translation>Ocultar &amp;meus cabeçalhos de cookies</translation>
    </message>
    <message>
        <source>Cookie &amp;sites:</source>
        <translation>Si&amp;tes de cookies:</translation>
    </message>
    <message>
        <source>Cookie sites</source>
        <translation>Sites de cookies</translation>
    </message>
    <message>
        <source>No site is listed.</source>
        <translation>Nenhum site na lista.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Excluir</translation>
    </message>
    <message>
        <source>Delete the selected site</source>
        <translation>Excluir o site selecionado</translation>
    </message>
    <message>
        <source>&amp;New site:</source>
        <translation>No&amp;vo site:</translation>
    </message>
    <message>
        <source>New cookie site</source>
        <translation>Novo site de cookies</translation>
    </message>
    <message>
        <source>A&amp;dd</source>
        <translation>A&amp;dicionar</translation>
    </message>
    <message>
        <source>Add the site</source>
        <translation>Adicionar o site</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsHotkeys</name>
    <message>
        <source>&amp;Hide IP:</source>
        <translation>Ocultar &amp;IP:</translation>
    </message>
    <message>
        <source>Hide IP, hot key</source>
        <translation>Ocultar IP, tecla de atalho</translation>
    </message>
    <message>
        <source>Hide IP, problem</source>
        <translation>Ocultar IP, problema</translation>
    </message>
    <message>
        <source>Chan&amp;ge IP:</source>
        <translation>&amp;Trocar IP:</translation>
    </message>
    <message>
        <source>Change IP, hot key</source>
        <translation>Trocar IP, tecla de atalho</translation>
    </message>
    <message>
        <source>Change IP, problem</source>
        <translation>Trocar IP, problema</translation>
    </message>
    <message>
        <source>&amp;Stop hiding IP:</source>
        <translation>&amp;Parar de ocultar o IP:</translation>
    </message>
    <message>
        <source>Stop hiding IP, hot key</source>
        <translation>Parar de ocultar o IP, tecla de atalho</translation>
    </message>
    <message>
        <source>Stop hiding IP, problem</source>
        <translation>Parar de ocultar o IP, problema</translation>
    </message>
    <message>
        <source>&amp;Discard IP:</source>
        <translation>&amp;Descartar IP:</translation>
    </message>
    <message>
        <source>Discard IP, hot key</source>
        <translation>Descartar IP, tecla de atalho</translation>
    </message>
    <message>
        <source>Discard IP, problem</source>
        <translation>Descartar IP, problema</translation>
    </message>
    <message>
        <source>&amp;Bring up window:</source>
        <translation>&amp;Mostrar a janela:</translation>
    </message>
    <message>
        <source>Bring up window, hot key</source>
        <translation>Mostrar a janela, tecla de atalho</translation>
    </message>
    <message>
        <source>Bring up window, problem</source>
        <translation>Mostrar a janela, problema</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsIpAddresses</name>
    <message>
        <source>&amp;Discarded IP addresses:</source>
        <translation>Endereços IP &amp;descartados:</translation>
    </message>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Endereços IP descartados</translation>
    </message>
    <message>
        <source>No address is discarded. Discard IP puts the address in use here.</source>
        <translation>Nenhum endereço descartado. “Descartar IP” coloca aqui o endereço em uso.</translation>
    </message>
    <message>
        <source>Quorvane does not connect to these addresses again.</source>
        <translation>O Quorvane não se conecta mais a estes endereços.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Excluir</translation>
    </message>
    <message>
        <source>Delete the selected address</source>
        <translation>Excluir o endereço selecionado</translation>
    </message>
    <message>
        <source>Clea&amp;r</source>
        <translation>&amp;Limpar</translation>
    </message>
    <message>
        <source>Clear the list of addresses</source>
        <translation>Limpar a lista de endereços</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>Trocar &amp;IP a cada</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Minutos entre as trocas de IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Minutos, ajuste gradual</translation>
    </message>
    <message>
        <source>&amp;Hide my IP when Quorvane starts</source>
        <translation>Ocultar meu IP ao iniciar o &amp;Quorvane</translation>
    </message>
    <message>
        <source>&amp;Start Quorvane when I log in</source>
        <translation>Iniciar o Quor&amp;vane ao entrar na sessão</translation>
    </message>
    <message>
        <source>Put &amp;back my name servers when I stop hiding</source>
        <translation>Resta&amp;urar meus servidores de nomes ao parar</translation>
    </message>
    <message>
        <source>Quorvane uses 8.8.8.8 and 8.8.4.4 in place of them.</source>
        <translation>O Quorvane usa 8.8.8.8 e 8.8.4.4 no lugar deles.</translation>
    </message>
    <message>
        <source>Put Back &amp;Now</source>
        <translation>&amp;Restaurar agora</translation>
    </message>
    <message>
        <source>Put back my name servers now</source>
        <translation>Restaurar agora meus servidores de nomes</translation>
    </message>
    <message>
        <source>Reconnect when the &amp;tunnel is lost</source>
        <translation>Reconectar quando o &amp;túnel for perdido</translation>
    </message>
    <message>
        <source>Network lock</source>
        <translation>Bloqueio de rede</translation>
    </message>
    <message>
        <source>From the moment you hide your IP until you stop, nothing leaves this computer but the tunnel, even when the tunnel or Quorvane fails.</source>
        <translation>Desde que você oculta seu IP até parar, nada sai deste computador fora do túnel, mesmo que o túnel ou o Quorvane falhe.</translation>
    </message>
    <message>
        <source>Block tra&amp;ffic outside the tunnel</source>
        <translation>Bloquear o tráfego &amp;fora do túnel</translation>
    </message>
    <message>
        <source>Allow my home networ&amp;k all the same</source>
        <translation>Permitir mesmo assim min&amp;ha rede doméstica</translation>
    </message>
    <message>
        <source>Windows:</source>
        <translation>Janelas:</translation>
    </message>
    <message>
        <source>as the deskto&amp;p</source>
        <translation>como a área de tra&amp;balho</translation>
    </message>
    <message>
        <source>alwa&amp;ys dark</source>
        <translation>&amp;sempre escuras</translation>
    </message>
    <message>
        <source>always li&amp;ght</source>
        <translation>sem&amp;pre claras</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsToolbar</name>
    <message>
        <source>IP Addresses</source>
        <translation>Endereços IP</translation>
    </message>
    <message>
        <source>Cookie Crumble</source>
        <translation>Migalhas de cookies</translation>
    </message>
    <message>
        <source>Hot Keys</source>
        <translation>Atalhos</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>Avançado</translation>
    </message>
    <message>
        <source>Test VPN</source>
        <translation>VPN de teste</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsVpn</name>
    <message>
        <source>A configuration of your own, for testing. Save stores it at once.</source>
        <translation>Uma configuração sua, para testes. “Salvar” a armazena imediatamente.</translation>
    </message>
    <message>
        <source>Con&amp;figuration:</source>
        <translation>Con&amp;figuração:</translation>
    </message>
    <message>
        <source>Path of the configuration file</source>
        <translation>Caminho do arquivo de configuração</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>&amp;Procurar…</translation>
    </message>
    <message>
        <source>Browse for a configuration file</source>
        <translation>Procurar um arquivo de configuração</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>Nome de &amp;usuário:</translation>
    </message>
    <message>
        <source>VPN user name</source>
        <translation>Nome de usuário da VPN</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Senha:</translation>
    </message>
    <message>
        <source>VPN password</source>
        <translation>Senha da VPN</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>Sal&amp;var</translation>
    </message>
    <message>
        <source>Save configuration and login</source>
        <translation>Salvar configuração e credenciais</translation>
    </message>
</context>
<context>
    <name>quorvane::TrayPresence</name>
    <message>
        <source>Change IP</source>
        <translation>Trocar IP</translation>
    </message>
    <message>
        <source>Copy IP</source>
        <translation>Copiar IP</translation>
    </message>
    <message>
        <source>Check IP in Browser</source>
        <translation>Verificar IP no navegador</translation>
    </message>
    <message>
        <source>Show Quorvane</source>
        <translation>Mostrar o Quorvane</translation>
    </message>
    <message>
        <source>Refresh Locations</source>
        <translation>Atualizar locais</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>Configurações…</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>Sobre o Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Sair do Quorvane</translation>
    </message>
    <message>
        <source>Quorvane: your IP is not hidden</source>
        <translation>Quorvane: seu IP não está oculto</translation>
    </message>
    <message>
        <source>Quorvane: searching for an available IP</source>
        <translation>Quorvane: procurando um IP disponível</translation>
    </message>
    <message>
        <source>Quorvane: your IP is hidden behind %1</source>
        <translation>Quorvane: seu IP está oculto atrás de %1</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Ajuda</translation>
    </message>
</context>
<context>
    <name>quorvane::VpnPane</name>
    <message>
        <source>Open OpenVPN Configuration</source>
        <translation>Abrir configuração do OpenVPN</translation>
    </message>
    <message>
        <source>OpenVPN configurations (%1)</source>
        <translation>Configurações do OpenVPN (%1)</translation>
    </message>
</context>
<context>
    <name>quorvane::WebPages</name>
    <message>
        <source>No web browser could be opened.</source>
        <translation>Não foi possível abrir nenhum navegador.</translation>
    </message>
    <message>
        <source>The page is %1</source>
        <translation>A página é %1</translation>
    </message>
</context>
</TS>
