<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>HotKeyTable</name>
    <message>
        <source>Down arrow</source>
        <translation>Pfeil ab</translation>
    </message>
    <message>
        <source>Left arrow</source>
        <translation>Pfeil links</translation>
    </message>
    <message>
        <source>Right arrow</source>
        <translation>Pfeil rechts</translation>
    </message>
    <message>
        <source>Up arrow</source>
        <translation>Pfeil auf</translation>
    </message>
    <message>
        <source>Cmd + %1</source>
        <translation>Cmd + %1</translation>
    </message>
    <message>
        <source>Ctrl + %1</source>
        <translation>Strg + %1</translation>
    </message>
    <message>
        <source>Shift + %1</source>
        <translation>Umschalt + %1</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
</context>
<context>
    <name>Reachability</name>
    <message>
        <source>Cellular</source>
        <translation>Mobilfunk</translation>
    </message>
    <message>
        <source>WiFi</source>
        <translation>WLAN</translation>
    </message>
    <message>
        <source>No Connection</source>
        <translation>Keine Verbindung</translation>
    </message>
</context>
<context>
    <name>Start</name>
    <message>
        <source>The program&apos;s files are not safe.</source>
        <translation>Die Dateien des Programms sind nicht sicher.</translation>
    </message>
    <message>
        <source>Another user can change &quot;%1&quot;. It would be run with administrator rights. Please install the program again.</source>
        <translation>Ein anderer Benutzer kann „%1“ ändern. Es würde mit Administratorrechten ausgeführt. Bitte installieren Sie das Programm neu.</translation>
    </message>
</context>
<context>
    <name>quorvane::About</name>
    <message>
        <source>About Quorvane</source>
        <translation>Über Quorvane</translation>
    </message>
    <message>
        <source>Quorvane&apos;s icon</source>
        <translation>Symbol von Quorvane</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Hides your IP address behind one that you were lent.</source>
        <translation>Verbirgt Ihre IP-Adresse hinter einer geliehenen.</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Unsere Website</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Copy Diagnostics</source>
        <translation>Diagnosedaten kopieren</translation>
    </message>
    <message>
        <source>Copies versions, settings and the ends of the logs, without names, passwords and addresses</source>
        <translation>Kopiert Versionen, Einstellungen und die Enden der Protokolle, ohne Namen, Passwörter und Adressen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Opens the guide in your browser; F1 does so in every window</source>
        <translation>Öffnet die Anleitung im Browser; F1 tut das in jedem Fenster</translation>
    </message>
</context>
<context>
    <name>quorvane::AuthenticaionView</name>
    <message>
        <source>Quorvane - Administrator</source>
        <translation>Quorvane - Administrator</translation>
    </message>
    <message>
        <source>Quorvane needs administrator rights</source>
        <translation>Quorvane benötigt Administratorrechte</translation>
    </message>
    <message>
        <source>They start and stop OpenVPN and set the DNS servers. Enter the name and the password of an administrator of this computer.</source>
        <translation>Damit wird OpenVPN gestartet und beendet, und die DNS-Server werden eingestellt. Geben Sie Name und Passwort eines Administrators dieses Computers ein.</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Benutzername</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Passwort:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
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
        <translation>Es muss genau ein Befehl angegeben werden.</translation>
    </message>
    <message>
        <source>Unexpected argument &quot;%1&quot;.</source>
        <translation>Unerwartetes Argument „%1“.</translation>
    </message>
    <message>
        <source>--json belongs to --status and --locations.</source>
        <translation>--json gehört zu --status und --locations.</translation>
    </message>
    <message>
        <source>--follow belongs to --status.</source>
        <translation>--follow gehört zu --status.</translation>
    </message>
    <message>
        <source>Controls the running copy of Quorvane. Without options, starts it.</source>
        <translation>Steuert das laufende Quorvane. Ohne Optionen wird es gestartet.</translation>
    </message>
    <message>
        <source>For --hide: a title that --locations lists.</source>
        <translation>Für --hide: ein Name aus der Liste von --locations.</translation>
    </message>
    <message>
        <source>Hide the IP, and print the lent one.</source>
        <translation>Die IP verbergen und die geliehene ausgeben.</translation>
    </message>
    <message>
        <source>Stop hiding the IP.</source>
        <translation>Die IP nicht mehr verbergen.</translation>
    </message>
    <message>
        <source>Change to an IP of a random location, and print it.</source>
        <translation>Zu einer IP eines zufälligen Standorts wechseln und sie ausgeben.</translation>
    </message>
    <message>
        <source>Never use the present IP again; change it, and print the new one.</source>
        <translation>Die jetzige IP nie wieder verwenden, sie wechseln und die neue ausgeben.</translation>
    </message>
    <message>
        <source>Print what is hidden.</source>
        <translation>Ausgeben, was verborgen ist.</translation>
    </message>
    <message>
        <source>Print the locations, one on each line.</source>
        <translation>Die Standorte ausgeben, einen je Zeile.</translation>
    </message>
    <message>
        <source>Show the window.</source>
        <translation>Das Fenster anzeigen.</translation>
    </message>
    <message>
        <source>Quit Quorvane.</source>
        <translation>Quorvane beenden.</translation>
    </message>
    <message>
        <source>With --status or --locations: print JSON.</source>
        <translation>Mit --status oder --locations: JSON ausgeben.</translation>
    </message>
    <message>
        <source>With --status: print each change, until Quorvane quits.</source>
        <translation>Mit --status: jede Änderung ausgeben, bis Quorvane beendet wird.</translation>
    </message>
    <message>
        <source>Lift the network lock, without a running copy.</source>
        <translation>Die Netzsperre aufheben, ohne laufendes Quorvane.</translation>
    </message>
    <message>
        <source>Print the version.</source>
        <translation>Die Version ausgeben.</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandRunner</name>
    <message>
        <source>Quorvane is not running, and there is no display to start it on.</source>
        <translation>Quorvane läuft nicht, und es gibt keinen Bildschirm, um es zu starten.</translation>
    </message>
    <message>
        <source>Quorvane could not be started.</source>
        <translation>Quorvane konnte nicht gestartet werden.</translation>
    </message>
    <message>
        <source>Quorvane&apos;s window asks for an administrator&apos;s name and password.</source>
        <translation>Das Fenster von Quorvane fragt nach Name und Passwort eines Administrators.</translation>
    </message>
    <message>
        <source>Quorvane is not running.</source>
        <translation>Quorvane läuft nicht.</translation>
    </message>
    <message>
        <source>Hidden behind %1 (%2). The real IP is %3.</source>
        <translation>Verborgen hinter %1 (%2). Die echte IP ist %3.</translation>
    </message>
    <message>
        <source>Searching for an available IP (%1).</source>
        <translation>Eine verfügbare IP wird gesucht (%1).</translation>
    </message>
    <message>
        <source>Starting: the service has not answered yet.</source>
        <translation>Start: Der Dienst hat noch nicht geantwortet.</translation>
    </message>
    <message>
        <source>Not hidden: %1.</source>
        <translation>Nicht verborgen: %1.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>Verkehr außerhalb des Tunnels ist gesperrt.</translation>
    </message>
</context>
<context>
    <name>quorvane::DisplayState</name>
    <message>
        <source>Stop Hiding IP</source>
        <translation>IP nicht mehr verbergen</translation>
    </message>
    <message>
        <source>WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!</source>
        <translation>WARNUNG! IHRE ECHTE IP IST DERZEIT NICHT VERBORGEN!</translation>
    </message>
    <message>
        <source>Searching for an available IP...</source>
        <translation>Eine verfügbare IP wird gesucht …</translation>
    </message>
    <message>
        <source>You are currently hiding your real IP %1</source>
        <translation>Ihre echte IP %1 ist derzeit verborgen</translation>
    </message>
    <message>
        <source>Every location has been used in this rotation. Refresh the locations or switch &quot;US only&quot; to begin a new one.</source>
        <translation>In dieser Runde wurde jeder Standort benutzt. Für eine neue Runde aktualisieren Sie die Standorte oder schalten Sie „Nur USA“ um.</translation>
    </message>
    <message>
        <source>There is no VPN configuration to connect with. Choose a location to get a new one.</source>
        <translation>Es gibt keine VPN-Konfiguration für die Verbindung. Wählen Sie einen Standort, um eine neue zu erhalten.</translation>
    </message>
    <message>
        <source>Locations can be refreshed while your IP is not hidden.</source>
        <translation>Die Standorte können aktualisiert werden, solange Ihre IP nicht verborgen ist.</translation>
    </message>
    <message>
        <source>No answer through the tunnel yet</source>
        <translation>Noch keine Antwort durch den Tunnel</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>Verkehr außerhalb des Tunnels ist gesperrt.</translation>
    </message>
    <message>
        <source>Cannot be pressed at the moment</source>
        <translation>Kann im Moment nicht gedrückt werden</translation>
    </message>
    <message>
        <source>Stops hiding your real IP</source>
        <translation>Hört auf, Ihre echte IP zu verbergen</translation>
    </message>
    <message>
        <source>Hides your real IP</source>
        <translation>Verbirgt Ihre echte IP</translation>
    </message>
    <message>
        <source>Step 1 of 3: checking the administrator</source>
        <translation>Schritt 1 von 3: Administrator wird geprüft</translation>
    </message>
    <message>
        <source>Step 2 of 3: getting a configuration</source>
        <translation>Schritt 2 von 3: Konfiguration wird geholt</translation>
    </message>
    <message>
        <source>Step 3 of 3: starting the tunnel</source>
        <translation>Schritt 3 von 3: Tunnel wird gestartet</translation>
    </message>
    <message>
        <source>Choose a location, then press Quorvane.</source>
        <translation>Wählen Sie einen Ort und drücken Sie „Quorvane“.</translation>
    </message>
</context>
<context>
    <name>quorvane::HideIpSession</name>
    <message>
        <source>No Internet connection detected, please check your Internet settings.
</source>
        <translation>Keine Internetverbindung gefunden. Bitte prüfen Sie Ihre Internet-Einstellungen.
</translation>
    </message>
    <message>
        <source>No available server detected.
</source>
        <translation>Kein verfügbarer Server gefunden.
</translation>
    </message>
    <message>
        <source>Location is not available.</source>
        <translation>Der Standort ist nicht verfügbar.</translation>
    </message>
    <message>
        <source>Please try a different location.</source>
        <translation>Bitte versuchen Sie einen anderen Standort.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>There was a problem connecting to the Quorvane server, please check your Internet connection or firewall settings.</source>
        <translation>Die Verbindung zum Quorvane-Server ist fehlgeschlagen. Bitte prüfen Sie Ihre Internetverbindung und die Einstellungen Ihrer Firewall.</translation>
    </message>
    <message>
        <source>Your real IP is visible</source>
        <translation>Ihre echte IP ist sichtbar</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel could not be blocked, so your IP is not hidden.</source>
        <translation>Verkehr außerhalb des Tunnels konnte nicht gesperrt werden; deshalb wird Ihre IP nicht verborgen.</translation>
    </message>
    <message>
        <source>The block of traffic outside the tunnel could not be lifted.</source>
        <translation>Die Sperre des Verkehrs außerhalb des Tunnels konnte nicht aufgehoben werden.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked</source>
        <translation>Verkehr außerhalb des Tunnels ist noch gesperrt</translation>
    </message>
    <message>
        <source>Type &quot;quorvane --unlock&quot; in a terminal to lift the block.</source>
        <translation>Geben Sie in einem Terminal „quorvane --unlock“ ein, um die Sperre aufzuheben.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked since Quorvane last ran.</source>
        <translation>Verkehr außerhalb des Tunnels ist noch gesperrt, seit Quorvane zuletzt lief.</translation>
    </message>
    <message>
        <source>It has ended without lifting the block. Your IP is not hidden.</source>
        <translation>Es wurde beendet, ohne die Sperre aufzuheben. Ihre IP ist nicht verborgen.</translation>
    </message>
    <message>
        <source>Lift the Block</source>
        <translation>Sperre aufheben</translation>
    </message>
    <message>
        <source>Hide My IP</source>
        <translation>Meine IP verbergen</translation>
    </message>
    <message>
        <source>Your IP was changed</source>
        <translation>Ihre IP wurde geändert</translation>
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
        <translation>Die gewählte Tastenkombination wird bereits für eine andere Aktion verwendet.</translation>
    </message>
    <message>
        <source>Another program uses this combination.</source>
        <translation>Ein anderes Programm verwendet diese Kombination.</translation>
    </message>
    <message>
        <source>Belongs to &quot;%1&quot; until Quorvane quits.</source>
        <translation>Gehört zu „%1“, bis Quorvane beendet wird.</translation>
    </message>
    <message>
        <source>This keyboard has no such key.</source>
        <translation>Diese Tastatur hat keine solche Taste.</translation>
    </message>
    <message>
        <source>The desktop declined this combination.</source>
        <translation>Der Desktop hat diese Kombination abgelehnt.</translation>
    </message>
    <message>
        <source>These work while any program is in front. A combination that you replace stays in force until Quorvane quits.</source>
        <translation>Diese wirken in jedem Programm. Eine Kombination, die Sie ersetzen, gilt weiter, bis Quorvane beendet wird.</translation>
    </message>
    <message>
        <source>This desktop offers no global hot keys: these combinations have no effect.</source>
        <translation>Dieser Desktop bietet keine globalen Tastenkombinationen: Diese hier sind ohne Wirkung.</translation>
    </message>
    <message>
        <source>Its settings can bind keys to commands: %1</source>
        <translation>In seinen Einstellungen können Tasten mit Befehlen belegt werden: %1</translation>
    </message>
</context>
<context>
    <name>quorvane::IpAddressesPane</name>
    <message numerus="yes">
        <source>&amp;minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>&amp;Minute</numerusform>
            <numerusform>&amp;Minuten</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::LocationList</name>
    <message>
        <source>This location is full.</source>
        <translation>Dieser Standort ist voll.</translation>
    </message>
    <message>
        <source>%1, full</source>
        <translation>%1, voll</translation>
    </message>
    <message>
        <source>Random Location</source>
        <translation>Zufälliger Standort</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenu</name>
    <message>
        <source>Location</source>
        <translation>Standort</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Andere</translation>
    </message>
    <message>
        <source>More locations are in the window</source>
        <translation>Weitere Standorte stehen im Fenster</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenuItem</name>
    <message>
        <source>Country flag</source>
        <translation>Landesflagge</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Standort</translation>
    </message>
    <message>
        <source>Full mark</source>
        <translation>Zeichen für „voll“</translation>
    </message>
</context>
<context>
    <name>quorvane::LossReason</name>
    <message>
        <source>The tunnel was lost: the VPN server does not answer.</source>
        <translation>Der Tunnel ging verloren: Der VPN-Server antwortet nicht.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN has ended.</source>
        <translation>Der Tunnel ging verloren: OpenVPN wurde beendet.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN was killed.</source>
        <translation>Der Tunnel ging verloren: OpenVPN wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its network device is gone.</source>
        <translation>Der Tunnel ging verloren: Sein Netzwerkgerät ist verschwunden.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its routes were changed.</source>
        <translation>Der Tunnel ging verloren: Seine Routen wurden geändert.</translation>
    </message>
</context>
<context>
    <name>quorvane::MainWindow</name>
    <message>
        <source>State picture</source>
        <translation>Bild des Zustands</translation>
    </message>
    <message>
        <source>Status line</source>
        <translation>Statuszeile</translation>
    </message>
    <message>
        <source>Current IP address</source>
        <translation>Aktuelle IP-Adresse</translation>
    </message>
    <message>
        <source>Country flag</source>
        <translation>Landesflagge</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>Standort:</translation>
    </message>
    <message>
        <source>Location label</source>
        <translation>Beschriftung des Standorts</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Standort</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>Second notice</source>
        <translation>Zweiter Hinweis</translation>
    </message>
    <message>
        <source>Asking the service</source>
        <translation>Der Dienst wird gefragt</translation>
    </message>
    <message>
        <source>&amp;Change IP</source>
        <translation>IP &amp;wechseln</translation>
    </message>
    <message>
        <source>Change IP</source>
        <translation>IP wechseln</translation>
    </message>
    <message>
        <source>&amp;Discard IP</source>
        <translation>IP &amp;verwerfen</translation>
    </message>
    <message>
        <source>Discard IP</source>
        <translation>IP verwerfen</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>IP wechseln &amp;alle</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Minuten zwischen den Wechseln der IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Minuten, schrittweise</translation>
    </message>
    <message>
        <source>&amp;US only</source>
        <translation>Nur &amp;USA</translation>
    </message>
    <message>
        <source>Do not &amp;repeat IPs</source>
        <translation>IPs nicht wiede&amp;rholen</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>&amp;Einstellungen</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Unsere Website</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>Über Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Quorvane beenden</translation>
    </message>
    <message>
        <source>Flag: %1</source>
        <translation>Flagge: %1</translation>
    </message>
    <message>
        <source>IP hidden</source>
        <translation>IP verborgen</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Suche läuft</translation>
    </message>
    <message>
        <source>IP not hidden</source>
        <translation>IP nicht verborgen</translation>
    </message>
    <message>
        <source>Address notice</source>
        <translation>Hinweis zur Adresse</translation>
    </message>
    <message>
        <source>Notice of the block</source>
        <translation>Hinweis auf die Sperre</translation>
    </message>
    <message>
        <source>Lift the &amp;Block</source>
        <translation>Sperre au&amp;fheben</translation>
    </message>
    <message>
        <source>Lift the block of traffic outside the tunnel</source>
        <translation>Sperre des Verkehrs außerhalb des Tunnels aufheben</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>%1 (%2 s)</source>
        <translation>%1 (%2 s)</translation>
    </message>
    <message>
        <source>R&amp;otation</source>
        <translation>R&amp;otation</translation>
    </message>
    <message>
        <source>Shows or hides the controls of the rotation</source>
        <translation>Zeigt oder verbirgt die Bedienelemente der Rotation</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message numerus="yes">
        <source>minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>Minute</numerusform>
            <numerusform>Minuten</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::NetworkLock</name>
    <message>
        <source>The address of the Quorvane server was not found.</source>
        <translation>Die Adresse des Quorvane-Servers wurde nicht gefunden.</translation>
    </message>
    <message>
        <source>The administrator&apos;s name and password are not known.</source>
        <translation>Name und Passwort des Administrators sind nicht bekannt.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAboutWindowController</name>
    <message>
        <source>%1 built %2</source>
        <translation>%1, Stand: %2</translation>
    </message>
    <message>
        <source>Diagnostics Copied</source>
        <translation>Diagnosedaten kopiert</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvApplicationController</name>
    <message>
        <source>Quorvane is already running.</source>
        <translation>Quorvane läuft bereits.</translation>
    </message>
    <message>
        <source>There is already a copy of Quorvane running. This copy cannot be opened until that instance is quit.</source>
        <translation>Quorvane ist bereits geöffnet. Bitte beenden Sie das laufende Programm, bevor Sie es erneut öffnen.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAuthenticationWindowController</name>
    <message>
        <source>You input wrong user name or password.
</source>
        <translation>Der Benutzername oder das Passwort ist falsch.
</translation>
    </message>
    <message>
        <source>The administrator&apos;s account asks for more than its password: &quot;%1&quot;</source>
        <translation>Für das Konto des Administrators wird mehr als das Passwort verlangt: „%1“</translation>
    </message>
    <message>
        <source>Quorvane can answer the question for the password only. The password was not used for any other question.</source>
        <translation>Quorvane kann nur die Frage nach dem Passwort beantworten. Für keine andere Frage wurde das Passwort verwendet.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvDiscardIpTableViewController</name>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Verworfene IP-Adressen</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvLocationPaneController</name>
    <message>
        <source>Always Use Same IP &amp;Address</source>
        <translation>Immer &amp;dieselbe IP-Adresse nutzen</translation>
    </message>
    <message>
        <source>Location choice</source>
        <translation>Wahl des Standorts</translation>
    </message>
    <message>
        <source>Please check &quot;Always Use Same IP Address&quot; when you have found a fake IP you would like to reuse</source>
        <translation>Bitte wählen Sie „Immer dieselbe IP-Adresse nutzen“, wenn Sie eine geliehene IP gefunden haben, die Sie wieder verwenden möchten</translation>
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
        <translation>Die Namensserver lassen sich zurücksetzen, solange Ihre IP nicht verborgen ist.</translation>
    </message>
    <message>
        <source>The name servers could not be put back.</source>
        <translation>Die Namensserver konnten nicht zurückgesetzt werden.</translation>
    </message>
</context>
<context>
    <name>quorvane::SessionControl</name>
    <message>
        <source>Quorvane was quit.</source>
        <translation>Quorvane wurde beendet.</translation>
    </message>
    <message>
        <source>There is no location &quot;%1&quot;.</source>
        <translation>Den Standort „%1“ gibt es nicht.</translation>
    </message>
    <message>
        <source>Your IP is not hidden.</source>
        <translation>Ihre IP ist nicht verborgen.</translation>
    </message>
    <message>
        <source>No IP could be hidden.</source>
        <translation>Es konnte keine IP verborgen werden.</translation>
    </message>
    <message>
        <source>No administrator&apos;s name and password were given.</source>
        <translation>Name und Passwort eines Administrators wurden nicht angegeben.</translation>
    </message>
    <message>
        <source>The service has not answered yet.</source>
        <translation>Der Dienst hat noch nicht geantwortet.</translation>
    </message>
</context>
<context>
    <name>quorvane::Settings</name>
    <message>
        <source>Quorvane Settings</source>
        <translation>Quorvane-Einstellungen</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>Bereiche</translation>
    </message>
    <message>
        <source>Our &amp;Website</source>
        <translation>Unsere &amp;Website</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Unsere Website</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation>Über&amp;nehmen</translation>
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
        <translation>User-Agent:</translation>
    </message>
    <message>
        <source>Leave &amp;the browser&apos;s own user agent</source>
        <translation>User-Agent des &amp;Browsers beibehalten</translation>
    </message>
    <message>
        <source>&amp;Use this user agent:</source>
        <translation>&amp;Diesen User-Agent verwenden:</translation>
    </message>
    <message>
        <source>User agent</source>
        <translation>User-Agent</translation>
    </message>
    <message>
        <source>Choose a user agent</source>
        <translation>User-Agent wählen</translation>
    </message>
    <message>
        <source>&amp;Hide my referrer header</source>
        <translation>Meinen &amp;Referrer-Header verbergen</translation>
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
        <translation>Meine &amp;Cookie-Header verbergen</translation>
    </message>
    <message>
        <source>Cookie &amp;sites:</source>
        <translation>Cookie-&amp;Seiten:</translation>
    </message>
    <message>
        <source>Cookie sites</source>
        <translation>Cookie-Seiten</translation>
    </message>
    <message>
        <source>No site is listed.</source>
        <translation>Keine Seite aufgeführt.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Delete the selected site</source>
        <translation>Die gewählte Seite löschen</translation>
    </message>
    <message>
        <source>&amp;New site:</source>
        <translation>Neue Se&amp;ite:</translation>
    </message>
    <message>
        <source>New cookie site</source>
        <translation>Neue Cookie-Seite</translation>
    </message>
    <message>
        <source>A&amp;dd</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>Add the site</source>
        <translation>Die Seite hinzufügen</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsHotkeys</name>
    <message>
        <source>&amp;Hide IP:</source>
        <translation>IP &amp;verbergen:</translation>
    </message>
    <message>
        <source>Hide IP, hot key</source>
        <translation>IP verbergen, Tastenkombination</translation>
    </message>
    <message>
        <source>Hide IP, problem</source>
        <translation>IP verbergen, Problem</translation>
    </message>
    <message>
        <source>Chan&amp;ge IP:</source>
        <translation>IP we&amp;chseln:</translation>
    </message>
    <message>
        <source>Change IP, hot key</source>
        <translation>IP wechseln, Tastenkombination</translation>
    </message>
    <message>
        <source>Change IP, problem</source>
        <translation>IP wechseln, Problem</translation>
    </message>
    <message>
        <source>&amp;Stop hiding IP:</source>
        <translation>IP nicht &amp;mehr verbergen:</translation>
    </message>
    <message>
        <source>Stop hiding IP, hot key</source>
        <translation>IP nicht mehr verbergen, Tastenkombination</translation>
    </message>
    <message>
        <source>Stop hiding IP, problem</source>
        <translation>IP nicht mehr verbergen, Problem</translation>
    </message>
    <message>
        <source>&amp;Discard IP:</source>
        <translation>IP verwe&amp;rfen:</translation>
    </message>
    <message>
        <source>Discard IP, hot key</source>
        <translation>IP verwerfen, Tastenkombination</translation>
    </message>
    <message>
        <source>Discard IP, problem</source>
        <translation>IP verwerfen, Problem</translation>
    </message>
    <message>
        <source>&amp;Bring up window:</source>
        <translation>&amp;Fenster zeigen:</translation>
    </message>
    <message>
        <source>Bring up window, hot key</source>
        <translation>Fenster zeigen, Tastenkombination</translation>
    </message>
    <message>
        <source>Bring up window, problem</source>
        <translation>Fenster zeigen, Problem</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsIpAddresses</name>
    <message>
        <source>&amp;Discarded IP addresses:</source>
        <translation>&amp;Verworfene IP-Adressen:</translation>
    </message>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Verworfene IP-Adressen</translation>
    </message>
    <message>
        <source>No address is discarded. Discard IP puts the address in use here.</source>
        <translation>Keine Adresse verworfen. „IP verwerfen“ trägt die benutzte Adresse hier ein.</translation>
    </message>
    <message>
        <source>Quorvane does not connect to these addresses again.</source>
        <translation>Quorvane verbindet sich nicht mehr mit diesen Adressen.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Delete the selected address</source>
        <translation>Die gewählte Adresse löschen</translation>
    </message>
    <message>
        <source>Clea&amp;r</source>
        <translation>Lee&amp;ren</translation>
    </message>
    <message>
        <source>Clear the list of addresses</source>
        <translation>Die Liste der Adressen leeren</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>IP w&amp;echseln alle</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Minuten zwischen den Wechseln der IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Minuten, schrittweise</translation>
    </message>
    <message>
        <source>&amp;Hide my IP when Quorvane starts</source>
        <translation>Meine &amp;IP beim Start von Quorvane verbergen</translation>
    </message>
    <message>
        <source>&amp;Start Quorvane when I log in</source>
        <translation>Quorvane bei der Anmeldung &amp;starten</translation>
    </message>
    <message>
        <source>Put &amp;back my name servers when I stop hiding</source>
        <translation>&amp;Beim Beenden meine Namensserver zurücksetzen</translation>
    </message>
    <message>
        <source>Quorvane uses 8.8.8.8 and 8.8.4.4 in place of them.</source>
        <translation>Quorvane verwendet an ihrer Stelle 8.8.8.8 und 8.8.4.4.</translation>
    </message>
    <message>
        <source>Put Back &amp;Now</source>
        <translation>&amp;Jetzt zurücksetzen</translation>
    </message>
    <message>
        <source>Put back my name servers now</source>
        <translation>Meine Namensserver jetzt zurücksetzen</translation>
    </message>
    <message>
        <source>Reconnect when the &amp;tunnel is lost</source>
        <translation>Bei Verlust des &amp;Tunnels neu verbinden</translation>
    </message>
    <message>
        <source>Network lock</source>
        <translation>Netzsperre</translation>
    </message>
    <message>
        <source>From the moment you hide your IP until you stop, nothing leaves this computer but the tunnel, even when the tunnel or Quorvane fails.</source>
        <translation>Vom Verbergen Ihrer IP bis zum Anhalten verlässt nur der Tunnel diesen Rechner, auch wenn der Tunnel oder Quorvane ausfällt.</translation>
    </message>
    <message>
        <source>Block tra&amp;ffic outside the tunnel</source>
        <translation>Verkehr a&amp;ußerhalb des Tunnels sperren</translation>
    </message>
    <message>
        <source>Allow my home networ&amp;k all the same</source>
        <translation>Mein &amp;Heimnetz trotzdem erlauben</translation>
    </message>
    <message>
        <source>Windows:</source>
        <translation>Fenster:</translation>
    </message>
    <message>
        <source>as the deskto&amp;p</source>
        <translation>wie der &amp;Desktop</translation>
    </message>
    <message>
        <source>alwa&amp;ys dark</source>
        <translation>fest dun&amp;kel</translation>
    </message>
    <message>
        <source>always li&amp;ght</source>
        <translation>&amp;fest hell</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsToolbar</name>
    <message>
        <source>IP Addresses</source>
        <translation>IP-Adressen</translation>
    </message>
    <message>
        <source>Cookie Crumble</source>
        <translation>Cookie-Krümel</translation>
    </message>
    <message>
        <source>Hot Keys</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>Erweitert</translation>
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
        <translation>Eine eigene Konfiguration zum Testen. „Speichern“ legt sie sofort ab.</translation>
    </message>
    <message>
        <source>Con&amp;figuration:</source>
        <translation>&amp;Konfiguration:</translation>
    </message>
    <message>
        <source>Path of the configuration file</source>
        <translation>Pfad der Konfigurationsdatei</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>D&amp;urchsuchen …</translation>
    </message>
    <message>
        <source>Browse for a configuration file</source>
        <translation>Nach einer Konfigurationsdatei suchen</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>&amp;Benutzername:</translation>
    </message>
    <message>
        <source>VPN user name</source>
        <translation>VPN-Benutzername</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Passwort:</translation>
    </message>
    <message>
        <source>VPN password</source>
        <translation>VPN-Passwort</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save configuration and login</source>
        <translation>Konfiguration und Anmeldung speichern</translation>
    </message>
</context>
<context>
    <name>quorvane::TrayPresence</name>
    <message>
        <source>Change IP</source>
        <translation>IP wechseln</translation>
    </message>
    <message>
        <source>Copy IP</source>
        <translation>IP kopieren</translation>
    </message>
    <message>
        <source>Check IP in Browser</source>
        <translation>IP im Browser prüfen</translation>
    </message>
    <message>
        <source>Show Quorvane</source>
        <translation>Quorvane zeigen</translation>
    </message>
    <message>
        <source>Refresh Locations</source>
        <translation>Standorte aktualisieren</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>Über Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Quorvane beenden</translation>
    </message>
    <message>
        <source>Quorvane: your IP is not hidden</source>
        <translation>Quorvane: Ihre IP ist nicht verborgen</translation>
    </message>
    <message>
        <source>Quorvane: searching for an available IP</source>
        <translation>Quorvane: Eine verfügbare IP wird gesucht</translation>
    </message>
    <message>
        <source>Quorvane: your IP is hidden behind %1</source>
        <translation>Quorvane: Ihre IP ist hinter %1 verborgen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
</context>
<context>
    <name>quorvane::VpnPane</name>
    <message>
        <source>Open OpenVPN Configuration</source>
        <translation>OpenVPN-Konfiguration öffnen</translation>
    </message>
    <message>
        <source>OpenVPN configurations (%1)</source>
        <translation>OpenVPN-Konfigurationen (%1)</translation>
    </message>
</context>
<context>
    <name>quorvane::WebPages</name>
    <message>
        <source>No web browser could be opened.</source>
        <translation>Es konnte kein Webbrowser geöffnet werden.</translation>
    </message>
    <message>
        <source>The page is %1</source>
        <translation>Die Seite ist %1</translation>
    </message>
</context>
</TS>
