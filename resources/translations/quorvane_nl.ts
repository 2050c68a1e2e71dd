<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="nl_NL" sourcelanguage="en_US">
<context>
    <name>HotKeyTable</name>
    <message>
        <source>Down arrow</source>
        <translation>Pijl-omlaag</translation>
    </message>
    <message>
        <source>Left arrow</source>
        <translation>Pijl-links</translation>
    </message>
    <message>
        <source>Right arrow</source>
        <translation>Pijl-rechts</translation>
    </message>
    <message>
        <source>Up arrow</source>
        <translation>Pijl-omhoog</translation>
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
        <translation>Geen</translation>
    </message>
</context>
<context>
    <name>Reachability</name>
    <message>
        <source>Cellular</source>
        <translation>Mobiel netwerk</translation>
    </message>
    <message>
        <source>WiFi</source>
        <translation>Wi-Fi</translation>
    </message>
    <message>
        <source>No Connection</source>
        <translation>Geen verbinding</translation>
    </message>
</context>
<context>
    <name>Start</name>
    <message>
        <source>The program&apos;s files are not safe.</source>
        <translation>De bestanden van het programma zijn niet veilig.</translation>
    </message>
    <message>
        <source>Another user can change &quot;%1&quot;. It would be run with administrator rights. Please install the program again.</source>
        <translation>Een andere gebruiker kan ‘%1’ wijzigen, dat met beheerdersrechten zou worden uitgevoerd. Installeer het programma opnieuw.</translation>
    </message>
</context>
<context>
    <name>quorvane::About</name>
    <message>
        <source>About Quorvane</source>
        <translation>Over Quorvane</translation>
    </message>
    <message>
        <source>Quorvane&apos;s icon</source>
        <translation>Pictogram van Quorvane</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Versie</translation>
    </message>
    <message>
        <source>Hides your IP address behind one that you were lent.</source>
        <translation>Verbergt uw IP-adres achter een geleend adres.</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Onze website</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Copy Diagnostics</source>
        <translation>Diagnose kopiëren</translation>
    </message>
    <message>
        <source>Copies versions, settings and the ends of the logs, without names, passwords and addresses</source>
        <translation>Kopieert versies, instellingen en het einde van de logboeken, zonder namen, wachtwoorden en adressen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Help</translation>
    </message>
    <message>
        <source>Opens the guide in your browser; F1 does so in every window</source>
        <translation>Opent de handleiding in uw browser; F1 doet dat in elk venster</translation>
    </message>
</context>
<context>
    <name>quorvane::AuthenticaionView</name>
    <message>
        <source>Quorvane - Administrator</source>
        <translation>Quorvane - Beheerder</translation>
    </message>
    <message>
        <source>Quorvane needs administrator rights</source>
        <translation>Quorvane heeft beheerdersrechten nodig</translation>
    </message>
    <message>
        <source>They start and stop OpenVPN and set the DNS servers. Enter the name and the password of an administrator of this computer.</source>
        <translation>Hiermee wordt OpenVPN gestart en gestopt en worden de DNS-servers ingesteld. Voer de naam en het wachtwoord van een beheerder van deze computer in.</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Naam:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Gebruikersnaam</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Wachtwoord:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Wachtwoord</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuleren</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Starten</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandLine</name>
    <message>
        <source>Exactly one command is needed.</source>
        <translation>Er is precies één opdracht nodig.</translation>
    </message>
    <message>
        <source>Unexpected argument &quot;%1&quot;.</source>
        <translation>Onverwacht argument ‘%1’.</translation>
    </message>
    <message>
        <source>--json belongs to --status and --locations.</source>
        <translation>--json hoort bij --status en --locations.</translation>
    </message>
    <message>
        <source>--follow belongs to --status.</source>
        <translation>--follow hoort bij --status.</translation>
    </message>
    <message>
        <source>Controls the running copy of Quorvane. Without options, starts it.</source>
        <translation>Bestuurt het actieve exemplaar van Quorvane. Start het zonder opties.</translation>
    </message>
    <message>
        <source>For --hide: a title that --locations lists.</source>
        <translation>Voor --hide: een titel die --locations toont.</translation>
    </message>
    <message>
        <source>Hide the IP, and print the lent one.</source>
        <translation>Het IP verbergen en het geleende tonen.</translation>
    </message>
    <message>
        <source>Stop hiding the IP.</source>
        <translation>Het IP niet meer verbergen.</translation>
    </message>
    <message>
        <source>Change to an IP of a random location, and print it.</source>
        <translation>Naar een IP van een willekeurige locatie wisselen en dat tonen.</translation>
    </message>
    <message>
        <source>Never use the present IP again; change it, and print the new one.</source>
        <translation>Het huidige IP nooit meer gebruiken; het wijzigen en het nieuwe tonen.</translation>
    </message>
    <message>
        <source>Print what is hidden.</source>
        <translation>Tonen wat verborgen is.</translation>
    </message>
    <message>
        <source>Print the locations, one on each line.</source>
        <translation>De locaties tonen, één per regel.</translation>
    </message>
    <message>
        <source>Show the window.</source>
        <translation>Het venster tonen.</translation>
    </message>
    <message>
        <source>Quit Quorvane.</source>
        <translation>Quorvane afsluiten.</translation>
    </message>
    <message>
        <source>With --status or --locations: print JSON.</source>
        <translation>Met --status of --locations: JSON schrijven.</translation>
    </message>
    <message>
        <source>With --status: print each change, until Quorvane quits.</source>
        <translation>Met --status: elke wijziging tonen tot Quorvane wordt afgesloten.</translation>
    </message>
    <message>
        <source>Lift the network lock, without a running copy.</source>
        <translation>De netwerkvergrendeling opheffen, zonder actief exemplaar.</translation>
    </message>
    <message>
        <source>Print the version.</source>
        <translation>De versie tonen.</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandRunner</name>
    <message>
        <source>Quorvane is not running, and there is no display to start it on.</source>
        <translation>Quorvane is niet actief en er is geen scherm om het op te starten.</translation>
    </message>
    <message>
        <source>Quorvane could not be started.</source>
        <translation>Quorvane kon niet worden gestart.</translation>
    </message>
    <message>
        <source>Quorvane&apos;s window asks for an administrator&apos;s name and password.</source>
        <translation>Het venster van Quorvane vraagt om de naam en het wachtwoord van een beheerder.</translation>
    </message>
    <message>
        <source>Quorvane is not running.</source>
        <translation>Quorvane is niet actief.</translation>
    </message>
    <message>
        <source>Hidden behind %1 (%2). The real IP is %3.</source>
        <translation>Verborgen achter %1 (%2). Het echte IP is %3.</translation>
    </message>
    <message>
        <source>Searching for an available IP (%1).</source>
        <translation>Er wordt een beschikbaar IP gezocht (%1).</translation>
    </message>
    <message>
        <source>Starting: the service has not answered yet.</source>
        <translation>Bezig met starten: de dienst heeft nog niet geantwoord.</translation>
    </message>
    <message>
        <source>Not hidden: %1.</source>
        <translation>Niet verborgen: %1.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>Verkeer buiten de tunnel is geblokkeerd.</translation>
    </message>
</context>
<context>
    <name>quorvane::DisplayState</name>
    <message>
        <source>Stop Hiding IP</source>
        <translation>IP niet meer verbergen</translation>
    </message>
    <message>
        <source>WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!</source>
        <translation>WAARSCHUWING! UW ECHTE IP IS OP DIT MOMENT NIET VERBORGEN!</translation>
    </message>
    <message>
        <source>Searching for an available IP...</source>
        <translation>Er wordt een beschikbaar IP gezocht…</translation>
    </message>
    <message>
        <source>You are currently hiding your real IP %1</source>
        <translation>Uw echte IP %1 is op dit moment verborgen</translation>
    </message>
    <message>
        <source>Every location has been used in this rotation. Refresh the locations or switch &quot;US only&quot; to begin a new one.</source>
        <translation>Alle locaties zijn in deze ronde gebruikt. Vernieuw de locaties of schakel ‘Alleen VS’ om voor een nieuwe ronde.</translation>
    </message>
    <message>
        <source>There is no VPN configuration to connect with. Choose a location to get a new one.</source>
        <translation>Er is geen VPN-configuratie om mee te verbinden. Kies een locatie om een nieuwe te krijgen.</translation>
    </message>
    <message>
        <source>Locations can be refreshed while your IP is not hidden.</source>
        <translation>De locaties kunnen worden vernieuwd zolang uw IP niet verborgen is.</translation>
    </message>
    <message>
        <source>No answer through the tunnel yet</source>
        <translation>Nog geen antwoord via de tunnel</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>Verkeer buiten de tunnel is geblokkeerd.</translation>
    </message>
    <message>
        <source>Cannot be pressed at the moment</source>
        <translation>Kan nu niet worden ingedrukt</translation>
    </message>
    <message>
        <source>Stops hiding your real IP</source>
        <translation>Stopt met het verbergen van uw echte IP</translation>
    </message>
    <message>
        <source>Hides your real IP</source>
        <translation>Verbergt uw echte IP</translation>
    </message>
    <message>
        <source>Step 1 of 3: checking the administrator</source>
        <translation>Stap 1 van 3: beheerder controleren</translation>
    </message>
    <message>
        <source>Step 2 of 3: getting a configuration</source>
        <translation>Stap 2 van 3: configuratie ophalen</translation>
    </message>
    <message>
        <source>Step 3 of 3: starting the tunnel</source>
        <translation>Stap 3 van 3: tunnel starten</translation>
    </message>
    <message>
        <source>Choose a location, then press Quorvane.</source>
        <translation>Kies een locatie en druk op Quorvane.</translation>
    </message>
</context>
<context>
    <name>quorvane::HideIpSession</name>
    <message>
        <source>No Internet connection detected, please check your Internet settings.
</source>
        <translation>Geen internetverbinding gevonden. Controleer uw internetinstellingen.
</translation>
    </message>
    <message>
        <source>No available server detected.
</source>
        <translation>Geen beschikbare server gevonden.
</translation>
    </message>
    <message>
        <source>Location is not available.</source>
        <translation>De locatie is niet beschikbaar.</translation>
    </message>
    <message>
        <source>Please try a different location.</source>
        <translation>Probeer een andere locatie.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fout</translation>
    </message>
    <message>
        <source>There was a problem connecting to the Quorvane server, please check your Internet connection or firewall settings.</source>
        <translation>Er is een probleem met de verbinding met de Quorvane-server. Controleer uw internetverbinding of firewallinstellingen.</translation>
    </message>
    <message>
        <source>Your real IP is visible</source>
        <translation>Uw echte IP is zichtbaar</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel could not be blocked, so your IP is not hidden.</source>
        <translation>Verkeer buiten de tunnel kon niet worden geblokkeerd; uw IP is daarom niet verborgen.</translation>
    </message>
    <message>
        <source>The block of traffic outside the tunnel could not be lifted.</source>
        <translation>De blokkering van verkeer buiten de tunnel kon niet worden opgeheven.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked</source>
        <translation>Verkeer buiten de tunnel is nog geblokkeerd</translation>
    </message>
    <message>
        <source>Type &quot;quorvane --unlock&quot; in a terminal to lift the block.</source>
        <translation>Typ ‘quorvane --unlock’ in een terminal om de blokkering op te heffen.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked since Quorvane last ran.</source>
        <translation>Verkeer buiten de tunnel is nog geblokkeerd sinds Quorvane voor het laatst actief was.</translation>
    </message>
    <message>
        <source>It has ended without lifting the block. Your IP is not hidden.</source>
        <translation>Het is beëindigd zonder de blokkering op te heffen. Uw IP is niet verborgen.</translation>
    </message>
    <message>
        <source>Lift the Block</source>
        <translation>Blokkering opheffen</translation>
    </message>
    <message>
        <source>Hide My IP</source>
        <translation>Mijn IP verbergen</translation>
    </message>
    <message>
        <source>Your IP was changed</source>
        <translation>Uw IP is gewijzigd</translation>
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
        <translation>De gekozen sneltoets wordt al voor een andere actie gebruikt.</translation>
    </message>
    <message>
        <source>Another program uses this combination.</source>
        <translation>Een ander programma gebruikt deze combinatie.</translation>
    </message>
    <message>
        <source>Belongs to &quot;%1&quot; until Quorvane quits.</source>
        <translation>Hoort bij ‘%1’ tot Quorvane wordt afgesloten.</translation>
    </message>
    <message>
        <source>This keyboard has no such key.</source>
        <translation>Dit toetsenbord heeft die toets niet.</translation>
    </message>
    <message>
        <source>The desktop declined this combination.</source>
        <translation>Het bureaublad heeft deze combinatie geweigerd.</translation>
    </message>
    <message>
        <source>These work while any program is in front. A combination that you replace stays in force until Quorvane quits.</source>
        <translation>Deze werken in elk programma. Een combinatie die u vervangt, blijft gelden tot Quorvane wordt afgesloten.</translation>
    </message>
    <message>
        <source>This desktop offers no global hot keys: these combinations have no effect.</source>
        <translation>Dit bureaublad biedt geen globale sneltoetsen: deze combinaties hebben geen effect.</translation>
    </message>
    <message>
        <source>Its settings can bind keys to commands: %1</source>
        <translation>In de instellingen ervan kunnen toetsen aan opdrachten worden gekoppeld: %1</translation>
    </message>
</context>
<context>
    <name>quorvane::IpAddressesPane</name>
    <message numerus="yes">
        <source>&amp;minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>&amp;minuut</numerusform>
            <numerusform>&amp;minuten</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::LocationList</name>
    <message>
        <source>This location is full.</source>
        <translation>Deze locatie is vol.</translation>
    </message>
    <message>
        <source>%1, full</source>
        <translation>%1, vol</translation>
    </message>
    <message>
        <source>Random Location</source>
        <translation>Willekeurige locatie</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenu</name>
    <message>
        <source>Location</source>
        <translation>Locatie</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Andere</translation>
    </message>
    <message>
        <source>More locations are in the window</source>
        <translation>Meer locaties staan in het venster</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenuItem</name>
    <message>
        <source>Country flag</source>
        <translation>Landsvlag</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Locatie</translation>
    </message>
    <message>
        <source>Full mark</source>
        <translation>Teken voor ‘vol’</translation>
    </message>
</context>
<context>
    <name>quorvane::LossReason</name>
    <message>
        <source>The tunnel was lost: the VPN server does not answer.</source>
        <translation>De tunnel is verbroken: de VPN-server antwoordt niet.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN has ended.</source>
        <translation>De tunnel is verbroken: OpenVPN is beëindigd.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN was killed.</source>
        <translation>De tunnel is verbroken: OpenVPN is geforceerd afgesloten.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its network device is gone.</source>
        <translation>De tunnel is verbroken: het netwerkapparaat is verdwenen.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its routes were changed.</source>
        <translation>De tunnel is verbroken: de routes zijn gewijzigd.</translation>
    </message>
</context>
<context>
    <name>quorvane::MainWindow</name>
    <message>
        <source>State picture</source>
        <translation>Statusafbeelding</translation>
    </message>
    <message>
        <source>Status line</source>
        <translation>Statusregel</translation>
    </message>
    <message>
        <source>Current IP address</source>
        <translation>Huidig IP-adres</translation>
    </message>
    <message>
        <source>Country flag</source>
        <translation>Landsvlag</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>Locatie:</translation>
    </message>
    <message>
        <source>Location label</source>
        <translation>Label van de locatie</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Locatie</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>Melding</translation>
    </message>
    <message>
        <source>Second notice</source>
        <translation>Tweede melding</translation>
    </message>
    <message>
        <source>Asking the service</source>
        <translation>De dienst wordt geraadpleegd</translation>
    </message>
    <message>
        <source>&amp;Change IP</source>
        <translation>IP &amp;wijzigen</translation>
    </message>
    <message>
        <source>Change IP</source>
        <translation>IP wijzigen</translation>
    </message>
    <message>
        <source>&amp;Discard IP</source>
        <translation>&amp;IP verwerpen</translation>
    </message>
    <message>
        <source>Discard IP</source>
        <translation>IP verwerpen</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>IP wijzigen &amp;elke</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Minuten tussen IP-wijzigingen</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Minuten, stapsgewijs</translation>
    </message>
    <message>
        <source>&amp;US only</source>
        <translation>&amp;Alleen VS</translation>
    </message>
    <message>
        <source>Do not &amp;repeat IPs</source>
        <translation>IP’s &amp;niet herhalen</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>In&amp;stellingen</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Instellingen</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Onze website</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>Over Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Quorvane afsluiten</translation>
    </message>
    <message>
        <source>Flag: %1</source>
        <translation>Vlag: %1</translation>
    </message>
    <message>
        <source>IP hidden</source>
        <translation>IP verborgen</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Bezig met zoeken</translation>
    </message>
    <message>
        <source>IP not hidden</source>
        <translation>IP niet verborgen</translation>
    </message>
    <message>
        <source>Address notice</source>
        <translation>Melding over het adres</translation>
    </message>
    <message>
        <source>Notice of the block</source>
        <translation>Melding over de blokkering</translation>
    </message>
    <message>
        <source>Lift the &amp;Block</source>
        <translation>&amp;Blokkering opheffen</translation>
    </message>
    <message>
        <source>Lift the block of traffic outside the tunnel</source>
        <translation>De blokkering van verkeer buiten de tunnel opheffen</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Voortgang</translation>
    </message>
    <message>
        <source>%1 (%2 s)</source>
        <translation>%1 (%2 s)</translation>
    </message>
    <message>
        <source>R&amp;otation</source>
        <translation>&amp;Rotatie</translation>
    </message>
    <message>
        <source>Shows or hides the controls of the rotation</source>
        <translation>Toont of verbergt de bediening van de rotatie</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Afsluiten</translation>
    </message>
    <message numerus="yes">
        <source>minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>minuut</numerusform>
            <numerusform>minuten</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::NetworkLock</name>
    <message>
        <source>The address of the Quorvane server was not found.</source>
        <translation>Het adres van de Quorvane-server is niet gevonden.</translation>
    </message>
    <message>
        <source>The administrator&apos;s name and password are not known.</source>
        <translation>De naam en het wachtwoord van de beheerder zijn niet bekend.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAboutWindowController</name>
    <message>
        <source>%1 built %2</source>
        <translation>%1, gebouwd op %2</translation>
    </message>
    <message>
        <source>Diagnostics Copied</source>
        <translation>Diagnose gekopieerd</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvApplicationController</name>
    <message>
        <source>Quorvane is already running.</source>
        <translation>Quorvane is al actief.</translation>
    </message>
    <message>
        <source>There is already a copy of Quorvane running. This copy cannot be opened until that instance is quit.</source>
        <translation>Er is al een exemplaar van Quorvane actief. Dit exemplaar kan pas worden geopend als het andere is afgesloten.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAuthenticationWindowController</name>
    <message>
        <source>You input wrong user name or password.
</source>
        <translation>De gebruikersnaam of het wachtwoord is onjuist.
</translation>
    </message>
    <message>
        <source>The administrator&apos;s account asks for more than its password: &quot;%1&quot;</source>
        <translation>Het beheerdersaccount vraagt om meer dan het wachtwoord: ‘%1’</translation>
    </message>
    <message>
        <source>Quorvane can answer the question for the password only. The password was not used for any other question.</source>
        <translation>Quorvane kan alleen de vraag naar het wachtwoord beantwoorden. Het wachtwoord is voor geen andere vraag gebruikt.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvDiscardIpTableViewController</name>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Verworpen IP-adressen</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvLocationPaneController</name>
    <message>
        <source>Always Use Same IP &amp;Address</source>
        <translation>Altijd &amp;hetzelfde IP-adres gebruiken</translation>
    </message>
    <message>
        <source>Location choice</source>
        <translation>Keuze van de locatie</translation>
    </message>
    <message>
        <source>Please check &quot;Always Use Same IP Address&quot; when you have found a fake IP you would like to reuse</source>
        <translation>Schakel ‘Altijd hetzelfde IP-adres gebruiken’ in als u een geleend IP hebt gevonden dat u opnieuw wilt gebruiken</translation>
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
        <translation>De naamservers kunnen worden teruggezet zolang uw IP niet verborgen is.</translation>
    </message>
    <message>
        <source>The name servers could not be put back.</source>
        <translation>De naamservers konden niet worden teruggezet.</translation>
    </message>
</context>
<context>
    <name>quorvane::SessionControl</name>
    <message>
        <source>Quorvane was quit.</source>
        <translation>Quorvane is afgesloten.</translation>
    </message>
    <message>
        <source>There is no location &quot;%1&quot;.</source>
        <translation>Er is geen locatie ‘%1’.</translation>
    </message>
    <message>
        <source>Your IP is not hidden.</source>
        <translation>Uw IP is niet verborgen.</translation>
    </message>
    <message>
        <source>No IP could be hidden.</source>
        <translation>Er kon geen IP worden verborgen.</translation>
    </message>
    <message>
        <source>No administrator&apos;s name and password were given.</source>
        <translation>Er zijn geen naam en wachtwoord van een beheerder opgegeven.</translation>
    </message>
    <message>
        <source>The service has not answered yet.</source>
        <translation>De dienst heeft nog niet geantwoord.</translation>
    </message>
</context>
<context>
    <name>quorvane::Settings</name>
    <message>
        <source>Quorvane Settings</source>
        <translation>Quorvane-instellingen</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>Panelen</translation>
    </message>
    <message>
        <source>Our &amp;Website</source>
        <translation>Onze &amp;website</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Onze website</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Annuleren</translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation>&amp;Toepassen</translation>
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
        <translation>User-agent:</translation>
    </message>
    <message>
        <source>Leave &amp;the browser&apos;s own user agent</source>
        <translation>&amp;De user-agent van de browser behouden</translation>
    </message>
    <message>
        <source>&amp;Use this user agent:</source>
        <translation>Deze &amp;user-agent gebruiken:</translation>
    </message>
    <message>
        <source>User agent</source>
        <translation>User-agent</translation>
    </message>
    <message>
        <source>Choose a user agent</source>
        <translation>Een user-agent kiezen</translation>
    </message>
    <message>
        <source>&amp;Hide my referrer header</source>
        <translation>Mijn Referer-&amp;header verbergen</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsBrowsers</name>
    <message>
        <source>Browsers:</source>
        <translation>Browsers:</translation>
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
        <translation>&amp;Chrome</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsCookieCrumble</name>
    <message>
        <source>&amp;Hide my cookie headers</source>
        <translation>&amp;Mijn cookieheaders verbergen</translation>
    </message>
    <message>
        <source>Cookie &amp;sites:</source>
        <translation>Coo&amp;kiesites:</translation>
    </message>
    <message>
        <source>Cookie sites</source>
        <translation>Cookiesites</translation>
    </message>
    <message>
        <source>No site is listed.</source>
        <translation>Er staat geen site in de lijst.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Verwijderen</translation>
    </message>
    <message>
        <source>Delete the selected site</source>
        <translation>De geselecteerde site verwijderen</translation>
    </message>
    <message>
        <source>&amp;New site:</source>
        <translation>&amp;Nieuwe site:</translation>
    </message>
    <message>
        <source>New cookie site</source>
        <translation>Nieuwe cookiesite</translation>
    </message>
    <message>
        <source>A&amp;dd</source>
        <translation>To&amp;evoegen</translation>
    </message>
    <message>
        <source>Add the site</source>
        <translation>De site toevoegen</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsHotkeys</name>
    <message>
        <source>&amp;Hide IP:</source>
        <translation>IP v&amp;erbergen:</translation>
    </message>
    <message>
        <source>Hide IP, hot key</source>
        <translation>IP verbergen, sneltoets</translation>
    </message>
    <message>
        <source>Hide IP, problem</source>
        <translation>IP verbergen, probleem</translation>
    </message>
    <message>
        <source>Chan&amp;ge IP:</source>
        <translation>IP wijzi&amp;gen:</translation>
    </message>
    <message>
        <source>Change IP, hot key</source>
        <translation>IP wijzigen, sneltoets</translation>
    </message>
    <message>
        <source>Change IP, problem</source>
        <translation>IP wijzigen, probleem</translation>
    </message>
    <message>
        <source>&amp;Stop hiding IP:</source>
        <translation>IP &amp;niet meer verbergen:</translation>
    </message>
    <message>
        <source>Stop hiding IP, hot key</source>
        <translation>IP niet meer verbergen, sneltoets</translation>
    </message>
    <message>
        <source>Stop hiding IP, problem</source>
        <translation>IP niet meer verbergen, probleem</translation>
    </message>
    <message>
        <source>&amp;Discard IP:</source>
        <translation>&amp;IP verwerpen:</translation>
    </message>
    <message>
        <source>Discard IP, hot key</source>
        <translation>IP verwerpen, sneltoets</translation>
    </message>
    <message>
        <source>Discard IP, problem</source>
        <translation>IP verwerpen, probleem</translation>
    </message>
    <message>
        <source>&amp;Bring up window:</source>
        <translation>&amp;Venster tonen:</translation>
    </message>
    <message>
        <source>Bring up window, hot key</source>
        <translation>Venster tonen, sneltoets</translation>
    </message>
    <message>
        <source>Bring up window, problem</source>
        <translation>Venster tonen, probleem</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsIpAddresses</name>
    <message>
        <source>&amp;Discarded IP addresses:</source>
        <translation>Verworpen &amp;IP-adressen:</translation>
    </message>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Verworpen IP-adressen</translation>
    </message>
    <message>
        <source>No address is discarded. Discard IP puts the address in use here.</source>
        <translation>Geen adres verworpen. ‘IP verwerpen’ zet het gebruikte adres hier neer.</translation>
    </message>
    <message>
        <source>Quorvane does not connect to these addresses again.</source>
        <translation>Quorvane maakt met deze adressen geen verbinding meer.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Verwijderen</translation>
    </message>
    <message>
        <source>Delete the selected address</source>
        <translation>Het geselecteerde adres verwijderen</translation>
    </message>
    <message>
        <source>Clea&amp;r</source>
        <translation>Wi&amp;ssen</translation>
    </message>
    <message>
        <source>Clear the list of addresses</source>
        <translation>De lijst met adressen wissen</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>IP wijzigen &amp;elke</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Minuten tussen IP-wijzigingen</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Minuten, stapsgewijs</translation>
    </message>
    <message>
        <source>&amp;Hide my IP when Quorvane starts</source>
        <translation>Mijn IP ve&amp;rbergen als Quorvane start</translation>
    </message>
    <message>
        <source>&amp;Start Quorvane when I log in</source>
        <translation>&amp;Quorvane starten als ik me aanmeld</translation>
    </message>
    <message>
        <source>Put &amp;back my name servers when I stop hiding</source>
        <translation>Mi&amp;jn naamservers terugzetten als ik stop</translation>
    </message>
    <message>
        <source>Quorvane uses 8.8.8.8 and 8.8.4.4 in place of them.</source>
        <translation>Quorvane gebruikt in plaats daarvan 8.8.8.8 en 8.8.4.4.</translation>
    </message>
    <message>
        <source>Put Back &amp;Now</source>
        <translation>&amp;Nu terugzetten</translation>
    </message>
    <message>
        <source>Put back my name servers now</source>
        <translation>Mijn naamservers nu terugzetten</translation>
    </message>
    <message>
        <source>Reconnect when the &amp;tunnel is lost</source>
        <translation>Opnie&amp;uw verbinden als de tunnel wegvalt</translation>
    </message>
    <message>
        <source>Network lock</source>
        <translation>Netwerkvergrendeling</translation>
    </message>
    <message>
        <source>From the moment you hide your IP until you stop, nothing leaves this computer but the tunnel, even when the tunnel or Quorvane fails.</source>
        <translation>Vanaf het verbergen van uw IP tot u stopt, verlaat niets deze computer buiten de tunnel om, ook als de tunnel of Quorvane uitvalt.</translation>
    </message>
    <message>
        <source>Block tra&amp;ffic outside the tunnel</source>
        <translation>Verkeer &amp;buiten de tunnel blokkeren</translation>
    </message>
    <message>
        <source>Allow my home networ&amp;k all the same</source>
        <translation>Mijn thuisnetwer&amp;k toch toestaan</translation>
    </message>
    <message>
        <source>Windows:</source>
        <translation>Vensters:</translation>
    </message>
    <message>
        <source>as the deskto&amp;p</source>
        <translation>&amp;zoals het bureaublad</translation>
    </message>
    <message>
        <source>alwa&amp;ys dark</source>
        <translation>altijd &amp;donker</translation>
    </message>
    <message>
        <source>always li&amp;ght</source>
        <translation>altijd &amp;licht</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsToolbar</name>
    <message>
        <source>IP Addresses</source>
        <translation>IP-adressen</translation>
    </message>
    <message>
        <source>Cookie Crumble</source>
        <translation>Cookiekruimels</translation>
    </message>
    <message>
        <source>Hot Keys</source>
        <translation>Sneltoetsen</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>Geavanceerd</translation>
    </message>
    <message>
        <source>Test VPN</source>
        <translation>Test-VPN</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsVpn</name>
    <message>
        <source>A configuration of your own, for testing. Save stores it at once.</source>
        <translation>Een eigen configuratie om te testen. ‘Opslaan’ bewaart die meteen.</translation>
    </message>
    <message>
        <source>Con&amp;figuration:</source>
        <translation>Con&amp;figuratie:</translation>
    </message>
    <message>
        <source>Path of the configuration file</source>
        <translation>Pad van het configuratiebestand</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>&amp;Bladeren…</translation>
    </message>
    <message>
        <source>Browse for a configuration file</source>
        <translation>Naar een configuratiebestand bladeren</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>&amp;Gebruikersnaam:</translation>
    </message>
    <message>
        <source>VPN user name</source>
        <translation>VPN-gebruikersnaam</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>Wa&amp;chtwoord:</translation>
    </message>
    <message>
        <source>VPN password</source>
        <translation>VPN-wachtwoord</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>Op&amp;slaan</translation>
    </message>
    <message>
        <source>Save configuration and login</source>
        <translation>Configuratie en aanmelding opslaan</translation>
    </message>
</context>
<context>
    <name>quorvane::TrayPresence</name>
    <message>
        <source>Change IP</source>
        <translation>IP wijzigen</translation>
    </message>
    <message>
        <source>Copy IP</source>
        <translation>IP kopiëren</translation>
    </message>
    <message>
        <source>Check IP in Browser</source>
        <translation>IP in browser controleren</translation>
    </message>
    <message>
        <source>Show Quorvane</source>
        <translation>Quorvane tonen</translation>
    </message>
    <message>
        <source>Refresh Locations</source>
        <translation>Locaties vernieuwen</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>Instellingen…</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>Over Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Quorvane afsluiten</translation>
    </message>
    <message>
        <source>Quorvane: your IP is not hidden</source>
        <translation>Quorvane: uw IP is niet verborgen</translation>
    </message>
    <message>
        <source>Quorvane: searching for an available IP</source>
        <translation>Quorvane: er wordt een beschikbaar IP gezocht</translation>
    </message>
    <message>
        <source>Quorvane: your IP is hidden behind %1</source>
        <translation>Quorvane: uw IP is verborgen achter %1</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Help</translation>
    </message>
</context>
<context>
    <name>quorvane::VpnPane</name>
    <message>
        <source>Open OpenVPN Configuration</source>
        <translation>OpenVPN-configuratie openen</translation>
    </message>
    <message>
        <source>OpenVPN configurations (%1)</source>
        <translation>OpenVPN-configuraties (%1)</translation>
    </message>
</context>
<context>
    <name>quorvane::WebPages</name>
    <message>
        <source>No web browser could be opened.</source>
        <translation>Er kon geen webbrowser worden geopend.</translation>
    </message>
    <message>
        <source>The page is %1</source>
        <translation>De pagina is %1</translation>
    </message>
</context>
</TS>
