<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it_IT" sourcelanguage="en_US">
<context>
    <name>HotKeyTable</name>
    <message>
        <source>Down arrow</source>
        <translation>Freccia giù</translation>
    </message>
    <message>
        <source>Left arrow</source>
        <translation>Freccia sinistra</translation>
    </message>
    <message>
        <source>Right arrow</source>
        <translation>Freccia destra</translation>
    </message>
    <message>
        <source>Up arrow</source>
        <translation>Freccia su</translation>
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
        <translation>Maiusc + %1</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Nessuno</translation>
    </message>
</context>
<context>
    <name>Reachability</name>
    <message>
        <source>Cellular</source>
        <translation>Rete mobile</translation>
    </message>
    <message>
        <source>WiFi</source>
        <translation>Wi-Fi</translation>
    </message>
    <message>
        <source>No Connection</source>
        <translation>Nessuna connessione</translation>
    </message>
</context>
<context>
    <name>Start</name>
    <message>
        <source>The program&apos;s files are not safe.</source>
        <translation>I file del programma non sono sicuri.</translation>
    </message>
    <message>
        <source>Another user can change &quot;%1&quot;. It would be run with administrator rights. Please install the program again.</source>
        <translation>Un altro utente può modificare «%1», che verrebbe eseguito con i diritti di amministratore. Reinstallare il programma.</translation>
    </message>
</context>
<context>
    <name>quorvane::About</name>
    <message>
        <source>About Quorvane</source>
        <translation>Informazioni su Quorvane</translation>
    </message>
    <message>
        <source>Quorvane&apos;s icon</source>
        <translation>Icona di Quorvane</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Versione</translation>
    </message>
    <message>
        <source>Hides your IP address behind one that you were lent.</source>
        <translation>Nasconde il tuo indirizzo IP dietro uno prestato.</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Il nostro sito web</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Copy Diagnostics</source>
        <translation>Copia diagnostica</translation>
    </message>
    <message>
        <source>Copies versions, settings and the ends of the logs, without names, passwords and addresses</source>
        <translation>Copia versioni, impostazioni e la fine dei registri, senza nomi, password e indirizzi</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aiuto</translation>
    </message>
    <message>
        <source>Opens the guide in your browser; F1 does so in every window</source>
        <translation>Apre la guida nel browser; F1 lo fa in ogni finestra</translation>
    </message>
</context>
<context>
    <name>quorvane::AuthenticaionView</name>
    <message>
        <source>Quorvane - Administrator</source>
        <translation>Quorvane - Amministratore</translation>
    </message>
    <message>
        <source>Quorvane needs administrator rights</source>
        <translation>Quorvane richiede i diritti di amministratore</translation>
    </message>
    <message>
        <source>They start and stop OpenVPN and set the DNS servers. Enter the name and the password of an administrator of this computer.</source>
        <translation>Servono ad avviare e arrestare OpenVPN e a impostare i server DNS. Inserisci il nome e la password di un amministratore di questo computer.</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Nome:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Nome utente</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Password:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Password</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Avvia</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandLine</name>
    <message>
        <source>Exactly one command is needed.</source>
        <translation>Serve esattamente un comando.</translation>
    </message>
    <message>
        <source>Unexpected argument &quot;%1&quot;.</source>
        <translation>Argomento inatteso «%1».</translation>
    </message>
    <message>
        <source>--json belongs to --status and --locations.</source>
        <translation>--json va con --status e --locations.</translation>
    </message>
    <message>
        <source>--follow belongs to --status.</source>
        <translation>--follow va con --status.</translation>
    </message>
    <message>
        <source>Controls the running copy of Quorvane. Without options, starts it.</source>
        <translation>Controlla la copia di Quorvane in esecuzione. Senza opzioni, la avvia.</translation>
    </message>
    <message>
        <source>For --hide: a title that --locations lists.</source>
        <translation>Per --hide: un titolo elencato da --locations.</translation>
    </message>
    <message>
        <source>Hide the IP, and print the lent one.</source>
        <translation>Nasconde l’IP e mostra quello prestato.</translation>
    </message>
    <message>
        <source>Stop hiding the IP.</source>
        <translation>Smette di nascondere l’IP.</translation>
    </message>
    <message>
        <source>Change to an IP of a random location, and print it.</source>
        <translation>Passa a un IP di una località casuale e lo mostra.</translation>
    </message>
    <message>
        <source>Never use the present IP again; change it, and print the new one.</source>
        <translation>Non usa più l’IP attuale; lo cambia e mostra il nuovo.</translation>
    </message>
    <message>
        <source>Print what is hidden.</source>
        <translation>Mostra che cosa è nascosto.</translation>
    </message>
    <message>
        <source>Print the locations, one on each line.</source>
        <translation>Mostra le località, una per riga.</translation>
    </message>
    <message>
        <source>Show the window.</source>
        <translation>Mostra la finestra.</translation>
    </message>
    <message>
        <source>Quit Quorvane.</source>
        <translation>Esce da Quorvane.</translation>
    </message>
    <message>
        <source>With --status or --locations: print JSON.</source>
        <translation>Con --status o --locations: scrive JSON.</translation>
    </message>
    <message>
        <source>With --status: print each change, until Quorvane quits.</source>
        <translation>Con --status: mostra ogni cambiamento fino alla chiusura di Quorvane.</translation>
    </message>
    <message>
        <source>Lift the network lock, without a running copy.</source>
        <translation>Rimuove il blocco di rete, senza una copia in esecuzione.</translation>
    </message>
    <message>
        <source>Print the version.</source>
        <translation>Mostra la versione.</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandRunner</name>
    <message>
        <source>Quorvane is not running, and there is no display to start it on.</source>
        <translation>Quorvane non è in esecuzione e non c’è uno schermo su cui avviarlo.</translation>
    </message>
    <message>
        <source>Quorvane could not be started.</source>
        <translation>Non è stato possibile avviare Quorvane.</translation>
    </message>
    <message>
        <source>Quorvane&apos;s window asks for an administrator&apos;s name and password.</source>
        <translation>La finestra di Quorvane chiede il nome e la password di un amministratore.</translation>
    </message>
    <message>
        <source>Quorvane is not running.</source>
        <translation>Quorvane non è in esecuzione.</translation>
    </message>
    <message>
        <source>Hidden behind %1 (%2). The real IP is %3.</source>
        <translation>Nascosto dietro %1 (%2). L’IP reale è %3.</translation>
    </message>
    <message>
        <source>Searching for an available IP (%1).</source>
        <translation>Ricerca di un IP disponibile (%1).</translation>
    </message>
    <message>
        <source>Starting: the service has not answered yet.</source>
        <translation>Avvio: il servizio non ha ancora risposto.</translation>
    </message>
    <message>
        <source>Not hidden: %1.</source>
        <translation>Non nascosto: %1.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>Il traffico fuori dal tunnel è bloccato.</translation>
    </message>
</context>
<context>
    <name>quorvane::DisplayState</name>
    <message>
        <source>Stop Hiding IP</source>
        <translation>Non nascondere più l’IP</translation>
    </message>
    <message>
        <source>WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!</source>
        <translation>ATTENZIONE! IL TUO IP REALE AL MOMENTO NON È NASCOSTO!</translation>
    </message>
    <message>
        <source>Searching for an available IP...</source>
        <translation>Ricerca di un IP disponibile…</translation>
    </message>
    <message>
        <source>You are currently hiding your real IP %1</source>
        <translation>Il tuo IP reale %1 al momento è nascosto</translation>
    </message>
    <message>
        <source>Every location has been used in this rotation. Refresh the locations or switch &quot;US only&quot; to begin a new one.</source>
        <translation>Tutte le località sono state usate in questa rotazione. Aggiorna le località o cambia «Solo USA» per iniziarne una nuova.</translation>
    </message>
    <message>
        <source>There is no VPN configuration to connect with. Choose a location to get a new one.</source>
        <translation>Non c’è una configurazione VPN con cui connettersi. Scegli una località per ottenerne una nuova.</translation>
    </message>
    <message>
        <source>Locations can be refreshed while your IP is not hidden.</source>
        <translation>Le località si possono aggiornare finché il tuo IP non è nascosto.</translation>
    </message>
    <message>
        <source>No answer through the tunnel yet</source>
        <translation>Ancora nessuna risposta attraverso il tunnel</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>Il traffico fuori dal tunnel è bloccato.</translation>
    </message>
    <message>
        <source>Cannot be pressed at the moment</source>
        <translation>Al momento non può essere premuto</translation>
    </message>
    <message>
        <source>Stops hiding your real IP</source>
        <translation>Smette di nascondere il tuo IP reale</translation>
    </message>
    <message>
        <source>Hides your real IP</source>
        <translation>Nasconde il tuo IP reale</translation>
    </message>
    <message>
        <source>Step 1 of 3: checking the administrator</source>
        <translation>Passo 1 di 3: verifica dell’amministratore</translation>
    </message>
    <message>
        <source>Step 2 of 3: getting a configuration</source>
        <translation>Passo 2 di 3: recupero di una configurazione</translation>
    </message>
    <message>
        <source>Step 3 of 3: starting the tunnel</source>
        <translation>Passo 3 di 3: avvio del tunnel</translation>
    </message>
    <message>
        <source>Choose a location, then press Quorvane.</source>
        <translation>Scegli una località, poi premi Quorvane.</translation>
    </message>
</context>
<context>
    <name>quorvane::HideIpSession</name>
    <message>
        <source>No Internet connection detected, please check your Internet settings.
</source>
        <translation>Nessuna connessione a Internet rilevata, controlla le impostazioni di Internet.
</translation>
    </message>
    <message>
        <source>No available server detected.
</source>
        <translation>Nessun server disponibile rilevato.
</translation>
    </message>
    <message>
        <source>Location is not available.</source>
        <translation>La località non è disponibile.</translation>
    </message>
    <message>
        <source>Please try a different location.</source>
        <translation>Prova con un’altra località.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Errore</translation>
    </message>
    <message>
        <source>There was a problem connecting to the Quorvane server, please check your Internet connection or firewall settings.</source>
        <translation>Si è verificato un problema di connessione al server Quorvane, controlla la connessione a Internet o le impostazioni del firewall.</translation>
    </message>
    <message>
        <source>Your real IP is visible</source>
        <translation>Il tuo IP reale è visibile</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel could not be blocked, so your IP is not hidden.</source>
        <translation>Non è stato possibile bloccare il traffico fuori dal tunnel, quindi il tuo IP non è nascosto.</translation>
    </message>
    <message>
        <source>The block of traffic outside the tunnel could not be lifted.</source>
        <translation>Non è stato possibile rimuovere il blocco del traffico fuori dal tunnel.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked</source>
        <translation>Il traffico fuori dal tunnel è ancora bloccato</translation>
    </message>
    <message>
        <source>Type &quot;quorvane --unlock&quot; in a terminal to lift the block.</source>
        <translation>Digita «quorvane --unlock» in un terminale per rimuovere il blocco.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked since Quorvane last ran.</source>
        <translation>Il traffico fuori dal tunnel è ancora bloccato dall’ultima esecuzione di Quorvane.</translation>
    </message>
    <message>
        <source>It has ended without lifting the block. Your IP is not hidden.</source>
        <translation>È terminato senza rimuovere il blocco. Il tuo IP non è nascosto.</translation>
    </message>
    <message>
        <source>Lift the Block</source>
        <translation>Rimuovi il blocco</translation>
    </message>
    <message>
        <source>Hide My IP</source>
        <translation>Nascondi il mio IP</translation>
    </message>
    <message>
        <source>Your IP was changed</source>
        <translation>Il tuo IP è stato cambiato</translation>
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
        <translation>Il tasto di scelta rapida selezionato è già usato da un’altra azione.</translation>
    </message>
    <message>
        <source>Another program uses this combination.</source>
        <translation>Un altro programma usa questa combinazione.</translation>
    </message>
    <message>
        <source>Belongs to &quot;%1&quot; until Quorvane quits.</source>
        <translation>Riservato a «%1» fino alla chiusura di Quorvane.</translation>
    </message>
    <message>
        <source>This keyboard has no such key.</source>
        <translation>Questa tastiera non ha questo tasto.</translation>
    </message>
    <message>
        <source>The desktop declined this combination.</source>
        <translation>Il desktop ha rifiutato questa combinazione.</translation>
    </message>
    <message>
        <source>These work while any program is in front. A combination that you replace stays in force until Quorvane quits.</source>
        <translation>Funzionano con qualsiasi programma in primo piano. Una combinazione sostituita resta attiva fino alla chiusura di Quorvane.</translation>
    </message>
    <message>
        <source>This desktop offers no global hot keys: these combinations have no effect.</source>
        <translation>Questo desktop non offre tasti di scelta rapida globali: queste combinazioni non hanno effetto.</translation>
    </message>
    <message>
        <source>Its settings can bind keys to commands: %1</source>
        <translation>Le sue impostazioni possono assegnare tasti ai comandi: %1</translation>
    </message>
</context>
<context>
    <name>quorvane::IpAddressesPane</name>
    <message numerus="yes">
        <source>&amp;minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>&amp;minuto</numerusform>
            <numerusform>&amp;minuti</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::LocationList</name>
    <message>
        <source>This location is full.</source>
        <translation>Questa località è al completo.</translation>
    </message>
    <message>
        <source>%1, full</source>
        <translation>%1, al completo</translation>
    </message>
    <message>
        <source>Random Location</source>
        <translation>Località casuale</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenu</name>
    <message>
        <source>Location</source>
        <translation>Località</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Altre</translation>
    </message>
    <message>
        <source>More locations are in the window</source>
        <translation>Altre località sono nella finestra</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenuItem</name>
    <message>
        <source>Country flag</source>
        <translation>Bandiera del Paese</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Località</translation>
    </message>
    <message>
        <source>Full mark</source>
        <translation>Segno «al completo»</translation>
    </message>
</context>
<context>
    <name>quorvane::LossReason</name>
    <message>
        <source>The tunnel was lost: the VPN server does not answer.</source>
        <translation>Il tunnel è andato perso: il server VPN non risponde.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN has ended.</source>
        <translation>Il tunnel è andato perso: OpenVPN è terminato.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN was killed.</source>
        <translation>Il tunnel è andato perso: OpenVPN è stato terminato forzatamente.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its network device is gone.</source>
        <translation>Il tunnel è andato perso: il suo dispositivo di rete è scomparso.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its routes were changed.</source>
        <translation>Il tunnel è andato perso: le sue rotte sono state modificate.</translation>
    </message>
</context>
<context>
    <name>quorvane::MainWindow</name>
    <message>
        <source>State picture</source>
        <translation>Immagine di stato</translation>
    </message>
    <message>
        <source>Status line</source>
        <translation>Riga di stato</translation>
    </message>
    <message>
        <source>Current IP address</source>
        <translation>Indirizzo IP attuale</translation>
    </message>
    <message>
        <source>Country flag</source>
        <translation>Bandiera del Paese</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>Località:</translation>
    </message>
    <message>
        <source>Location label</source>
        <translation>Etichetta della località</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Località</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>Avviso</translation>
    </message>
    <message>
        <source>Second notice</source>
        <translation>Secondo avviso</translation>
    </message>
    <message>
        <source>Asking the service</source>
        <translation>Richiesta al servizio</translation>
    </message>
    <message>
        <source>&amp;Change IP</source>
        <translation>&amp;Cambia IP</translation>
    </message>
    <message>
        <source>Change IP</source>
        <translation>Cambia IP</translation>
    </message>
    <message>
        <source>&amp;Discard IP</source>
        <translation>&amp;Scarta IP</translation>
    </message>
    <message>
        <source>Discard IP</source>
        <translation>Scarta IP</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>Cambia &amp;IP ogni</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Minuti tra i cambi di IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Minuti, selettore</translation>
    </message>
    <message>
        <source>&amp;US only</source>
        <translation>Solo &amp;USA</translation>
    </message>
    <message>
        <source>Do not &amp;repeat IPs</source>
        <translation>&amp;Non ripetere gli IP</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>I&amp;mpostazioni</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Impostazioni</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Il nostro sito web</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>Informazioni su Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Esci da Quorvane</translation>
    </message>
    <message>
        <source>Flag: %1</source>
        <translation>Bandiera: %1</translation>
    </message>
    <message>
        <source>IP hidden</source>
        <translation>IP nascosto</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Ricerca in corso</translation>
    </message>
    <message>
        <source>IP not hidden</source>
        <translation>IP non nascosto</translation>
    </message>
    <message>
        <source>Address notice</source>
        <translation>Avviso sull’indirizzo</translation>
    </message>
    <message>
        <source>Notice of the block</source>
        <translation>Avviso sul blocco</translation>
    </message>
    <message>
        <source>Lift the &amp;Block</source>
        <translation>Rimuovi il &amp;blocco</translation>
    </message>
    <message>
        <source>Lift the block of traffic outside the tunnel</source>
        <translation>Rimuovi il blocco del traffico fuori dal tunnel</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Avanzamento</translation>
    </message>
    <message>
        <source>%1 (%2 s)</source>
        <translation>%1 (%2 s)</translation>
    </message>
    <message>
        <source>R&amp;otation</source>
        <translation>&amp;Rotazione</translation>
    </message>
    <message>
        <source>Shows or hides the controls of the rotation</source>
        <translation>Mostra o nasconde i comandi della rotazione</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Esci</translation>
    </message>
    <message numerus="yes">
        <source>minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>minuto</numerusform>
            <numerusform>minuti</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::NetworkLock</name>
    <message>
        <source>The address of the Quorvane server was not found.</source>
        <translation>L’indirizzo del server Quorvane non è stato trovato.</translation>
    </message>
    <message>
        <source>The administrator&apos;s name and password are not known.</source>
        <translation>Il nome e la password dell’amministratore non sono noti.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAboutWindowController</name>
    <message>
        <source>%1 built %2</source>
        <translation>%1, compilata il %2</translation>
    </message>
    <message>
        <source>Diagnostics Copied</source>
        <translation>Diagnostica copiata</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvApplicationController</name>
    <message>
        <source>Quorvane is already running.</source>
        <translation>Quorvane è già in esecuzione.</translation>
    </message>
    <message>
        <source>There is already a copy of Quorvane running. This copy cannot be opened until that instance is quit.</source>
        <translation>Una copia di Quorvane è già in esecuzione. Questa copia non può essere aperta finché l’altra non viene chiusa.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAuthenticationWindowController</name>
    <message>
        <source>You input wrong user name or password.
</source>
        <translation>Il nome utente o la password non sono corretti.
</translation>
    </message>
    <message>
        <source>The administrator&apos;s account asks for more than its password: &quot;%1&quot;</source>
        <translation>L’account dell’amministratore richiede più della sua password: «%1»</translation>
    </message>
    <message>
        <source>Quorvane can answer the question for the password only. The password was not used for any other question.</source>
        <translation>Quorvane può rispondere solo alla richiesta della password. La password non è stata usata per nessun’altra domanda.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvDiscardIpTableViewController</name>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Indirizzi IP scartati</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvLocationPaneController</name>
    <message>
        <source>Always Use Same IP &amp;Address</source>
        <translation>Usa sempre &amp;lo stesso indirizzo IP</translation>
    </message>
    <message>
        <source>Location choice</source>
        <translation>Scelta della località</translation>
    </message>
    <message>
        <source>Please check &quot;Always Use Same IP Address&quot; when you have found a fake IP you would like to reuse</source>
        <translation>Seleziona «Usa sempre lo stesso indirizzo IP» quando hai trovato un IP prestato che vuoi riutilizzare</translation>
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
        <translation>I server dei nomi si possono ripristinare finché il tuo IP non è nascosto.</translation>
    </message>
    <message>
        <source>The name servers could not be put back.</source>
        <translation>Non è stato possibile ripristinare i server dei nomi.</translation>
    </message>
</context>
<context>
    <name>quorvane::SessionControl</name>
    <message>
        <source>Quorvane was quit.</source>
        <translation>Quorvane è stato chiuso.</translation>
    </message>
    <message>
        <source>There is no location &quot;%1&quot;.</source>
        <translation>Non esiste la località «%1».</translation>
    </message>
    <message>
        <source>Your IP is not hidden.</source>
        <translation>Il tuo IP non è nascosto.</translation>
    </message>
    <message>
        <source>No IP could be hidden.</source>
        <translation>Non è stato possibile nascondere alcun IP.</translation>
    </message>
    <message>
        <source>No administrator&apos;s name and password were given.</source>
        <translation>Il nome e la password di un amministratore non sono stati forniti.</translation>
    </message>
    <message>
        <source>The service has not answered yet.</source>
        <translation>Il servizio non ha ancora risposto.</translation>
    </message>
</context>
<context>
    <name>quorvane::Settings</name>
    <message>
        <source>Quorvane Settings</source>
        <translation>Impostazioni di Quorvane</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>Riquadri</translation>
    </message>
    <message>
        <source>Our &amp;Website</source>
        <translation>Il nostro sito &amp;web</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Il nostro sito web</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Annulla</translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation>Appli&amp;ca</translation>
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
        <translation>&amp;Lascia lo user agent del browser</translation>
    </message>
    <message>
        <source>&amp;Use this user agent:</source>
        <translation>&amp;Usa questo user agent:</translation>
    </message>
    <message>
        <source>User agent</source>
        <translation>User agent</translation>
    </message>
    <message>
        <source>Choose a user agent</source>
        <translation>Scegli uno user agent</translation>
    </message>
    <message>
        <source>&amp;Hide my referrer header</source>
        <translation>&amp;Nascondi la mia intestazione Referer</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsBrowsers</name>
    <message>
        <source>Browsers:</source>
        <translation>Browser:</translation>
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
        <translation>Nascondi &amp;le mie intestazioni dei cookie</translation>
    </message>
    <message>
        <source>Cookie &amp;sites:</source>
        <translation>Siti &amp;dei cookie:</translation>
    </message>
    <message>
        <source>Cookie sites</source>
        <translation>Siti dei cookie</translation>
    </message>
    <message>
        <source>No site is listed.</source>
        <translation>Nessun sito in elenco.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Elimina</translation>
    </message>
    <message>
        <source>Delete the selected site</source>
        <translation>Elimina il sito selezionato</translation>
    </message>
    <message>
        <source>&amp;New site:</source>
        <translation>&amp;Nuovo sito:</translation>
    </message>
    <message>
        <source>New cookie site</source>
        <translation>Nuovo sito dei cookie</translation>
    </message>
    <message>
        <source>A&amp;dd</source>
        <translation>Aggi&amp;ungi</translation>
    </message>
    <message>
        <source>Add the site</source>
        <translation>Aggiungi il sito</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsHotkeys</name>
    <message>
        <source>&amp;Hide IP:</source>
        <translation>&amp;Nascondi IP:</translation>
    </message>
    <message>
        <source>Hide IP, hot key</source>
        <translation>Nascondi IP, tasto di scelta rapida</translation>
    </message>
    <message>
        <source>Hide IP, problem</source>
        <translation>Nascondi IP, problema</translation>
    </message>
    <message>
        <source>Chan&amp;ge IP:</source>
        <translation>Cambia &amp;IP:</translation>
    </message>
    <message>
        <source>Change IP, hot key</source>
        <translation>Cambia IP, tasto di scelta rapida</translation>
    </message>
    <message>
        <source>Change IP, problem</source>
        <translation>Cambia IP, problema</translation>
    </message>
    <message>
        <source>&amp;Stop hiding IP:</source>
        <translation>Non nascondere &amp;più l’IP:</translation>
    </message>
    <message>
        <source>Stop hiding IP, hot key</source>
        <translation>Non nascondere più l’IP, tasto di scelta rapida</translation>
    </message>
    <message>
        <source>Stop hiding IP, problem</source>
        <translation>Non nascondere più l’IP, problema</translation>
    </message>
    <message>
        <source>&amp;Discard IP:</source>
        <translation>&amp;Scarta IP:</translation>
    </message>
    <message>
        <source>Discard IP, hot key</source>
        <translation>Scarta IP, tasto di scelta rapida</translation>
    </message>
    <message>
        <source>Discard IP, problem</source>
        <translation>Scarta IP, problema</translation>
    </message>
    <message>
        <source>&amp;Bring up window:</source>
        <translation>&amp;Mostra la finestra:</translation>
    </message>
    <message>
        <source>Bring up window, hot key</source>
        <translation>Mostra la finestra, tasto di scelta rapida</translation>
    </message>
    <message>
        <source>Bring up window, problem</source>
        <translation>Mostra la finestra, problema</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsIpAddresses</name>
    <message>
        <source>&amp;Discarded IP addresses:</source>
        <translation>In&amp;dirizzi IP scartati:</translation>
    </message>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Indirizzi IP scartati</translation>
    </message>
    <message>
        <source>No address is discarded. Discard IP puts the address in use here.</source>
        <translation>Nessun indirizzo scartato. «Scarta IP» inserisce qui l’indirizzo in uso.</translation>
    </message>
    <message>
        <source>Quorvane does not connect to these addresses again.</source>
        <translation>Quorvane non si connette più a questi indirizzi.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Elimina</translation>
    </message>
    <message>
        <source>Delete the selected address</source>
        <translation>Elimina l’indirizzo selezionato</translation>
    </message>
    <message>
        <source>Clea&amp;r</source>
        <translation>&amp;Svuota</translation>
    </message>
    <message>
        <source>Clear the list of addresses</source>
        <translation>Svuota l’elenco degli indirizzi</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>Cambia &amp;IP ogni</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Minuti tra i cambi di IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Minuti, selettore</translation>
    </message>
    <message>
        <source>&amp;Hide my IP when Quorvane starts</source>
        <translation>Nascondi il mio IP all’a&amp;vvio di Quorvane</translation>
    </message>
    <message>
        <source>&amp;Start Quorvane when I log in</source>
        <translation>Avvia &amp;Quorvane quando accedo</translation>
    </message>
    <message>
        <source>Put &amp;back my name servers when I stop hiding</source>
        <translation>Ripris&amp;tina i miei server dei nomi alla fine</translation>
    </message>
    <message>
        <source>Quorvane uses 8.8.8.8 and 8.8.4.4 in place of them.</source>
        <translation>Quorvane usa 8.8.8.8 e 8.8.4.4 al loro posto.</translation>
    </message>
    <message>
        <source>Put Back &amp;Now</source>
        <translation>Ripristi&amp;na ora</translation>
    </message>
    <message>
        <source>Put back my name servers now</source>
        <translation>Ripristina ora i miei server dei nomi</translation>
    </message>
    <message>
        <source>Reconnect when the &amp;tunnel is lost</source>
        <translation>Riconnetti q&amp;uando il tunnel va perso</translation>
    </message>
    <message>
        <source>Network lock</source>
        <translation>Blocco di rete</translation>
    </message>
    <message>
        <source>From the moment you hide your IP until you stop, nothing leaves this computer but the tunnel, even when the tunnel or Quorvane fails.</source>
        <translation>Da quando nascondi il tuo IP fino a quando smetti, nulla lascia questo computer fuori dal tunnel, anche se il tunnel o Quorvane si guasta.</translation>
    </message>
    <message>
        <source>Block tra&amp;ffic outside the tunnel</source>
        <translation>Blocca il traffico &amp;fuori dal tunnel</translation>
    </message>
    <message>
        <source>Allow my home networ&amp;k all the same</source>
        <translation>Consenti comunque &amp;la mia rete domestica</translation>
    </message>
    <message>
        <source>Windows:</source>
        <translation>Finestre:</translation>
    </message>
    <message>
        <source>as the deskto&amp;p</source>
        <translation>come il deskto&amp;p</translation>
    </message>
    <message>
        <source>alwa&amp;ys dark</source>
        <translation>semp&amp;re scure</translation>
    </message>
    <message>
        <source>always li&amp;ght</source>
        <translation>sempre c&amp;hiare</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsToolbar</name>
    <message>
        <source>IP Addresses</source>
        <translation>Indirizzi IP</translation>
    </message>
    <message>
        <source>Cookie Crumble</source>
        <translation>Briciole di cookie</translation>
    </message>
    <message>
        <source>Hot Keys</source>
        <translation>Tasti rapidi</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>Avanzate</translation>
    </message>
    <message>
        <source>Test VPN</source>
        <translation>VPN di prova</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsVpn</name>
    <message>
        <source>A configuration of your own, for testing. Save stores it at once.</source>
        <translation>Una tua configurazione, per le prove. «Salva» la memorizza subito.</translation>
    </message>
    <message>
        <source>Con&amp;figuration:</source>
        <translation>Co&amp;nfigurazione:</translation>
    </message>
    <message>
        <source>Path of the configuration file</source>
        <translation>Percorso del file di configurazione</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>S&amp;foglia…</translation>
    </message>
    <message>
        <source>Browse for a configuration file</source>
        <translation>Cerca un file di configurazione</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>Nome &amp;utente:</translation>
    </message>
    <message>
        <source>VPN user name</source>
        <translation>Nome utente VPN</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Password:</translation>
    </message>
    <message>
        <source>VPN password</source>
        <translation>Password VPN</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Salva</translation>
    </message>
    <message>
        <source>Save configuration and login</source>
        <translation>Salva configurazione e credenziali</translation>
    </message>
</context>
<context>
    <name>quorvane::TrayPresence</name>
    <message>
        <source>Change IP</source>
        <translation>Cambia IP</translation>
    </message>
    <message>
        <source>Copy IP</source>
        <translation>Copia IP</translation>
    </message>
    <message>
        <source>Check IP in Browser</source>
        <translation>Verifica IP nel browser</translation>
    </message>
    <message>
        <source>Show Quorvane</source>
        <translation>Mostra Quorvane</translation>
    </message>
    <message>
        <source>Refresh Locations</source>
        <translation>Aggiorna le località</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>Impostazioni…</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>Informazioni su Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Esci da Quorvane</translation>
    </message>
    <message>
        <source>Quorvane: your IP is not hidden</source>
        <translation>Quorvane: il tuo IP non è nascosto</translation>
    </message>
    <message>
        <source>Quorvane: searching for an available IP</source>
        <translation>Quorvane: ricerca di un IP disponibile</translation>
    </message>
    <message>
        <source>Quorvane: your IP is hidden behind %1</source>
        <translation>Quorvane: il tuo IP è nascosto dietro %1</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aiuto</translation>
    </message>
</context>
<context>
    <name>quorvane::VpnPane</name>
    <message>
        <source>Open OpenVPN Configuration</source>
        <translation>Apri una configurazione OpenVPN</translation>
    </message>
    <message>
        <source>OpenVPN configurations (%1)</source>
        <translation>Configurazioni OpenVPN (%1)</translation>
    </message>
</context>
<context>
    <name>quorvane::WebPages</name>
    <message>
        <source>No web browser could be opened.</source>
        <translation>Non è stato possibile aprire alcun browser web.</translation>
    </message>
    <message>
        <source>The page is %1</source>
        <translation>La pagina è %1</translation>
    </message>
</context>
</TS>
