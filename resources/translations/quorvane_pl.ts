<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pl_PL" sourcelanguage="en_US">
<context>
    <name>HotKeyTable</name>
    <message>
        <source>Down arrow</source>
        <translation>Strzałka w dół</translation>
    </message>
    <message>
        <source>Left arrow</source>
        <translation>Strzałka w lewo</translation>
    </message>
    <message>
        <source>Right arrow</source>
        <translation>Strzałka w prawo</translation>
    </message>
    <message>
        <source>Up arrow</source>
        <translation>Strzałka w górę</translation>
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
        <translation>Brak</translation>
    </message>
</context>
<context>
    <name>Reachability</name>
    <message>
        <source>Cellular</source>
        <translation>Sieć komórkowa</translation>
    </message>
    <message>
        <source>WiFi</source>
        <translation>Wi-Fi</translation>
    </message>
    <message>
        <source>No Connection</source>
        <translation>Brak połączenia</translation>
    </message>
</context>
<context>
    <name>Start</name>
    <message>
        <source>The program&apos;s files are not safe.</source>
        <translation>Pliki programu nie są bezpieczne.</translation>
    </message>
    <message>
        <source>Another user can change &quot;%1&quot;. It would be run with administrator rights. Please install the program again.</source>
        <translation>Inny użytkownik może zmienić „%1”, które zostałoby uruchomione z prawami administratora. Zainstaluj program ponownie.</translation>
    </message>
</context>
<context>
    <name>quorvane::About</name>
    <message>
        <source>About Quorvane</source>
        <translation>O programie Quorvane</translation>
    </message>
    <message>
        <source>Quorvane&apos;s icon</source>
        <translation>Ikona programu Quorvane</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Wersja</translation>
    </message>
    <message>
        <source>Hides your IP address behind one that you were lent.</source>
        <translation>Ukrywa Twój adres IP za adresem wypożyczonym.</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Nasza witryna</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Copy Diagnostics</source>
        <translation>Kopiuj diagnostykę</translation>
    </message>
    <message>
        <source>Copies versions, settings and the ends of the logs, without names, passwords and addresses</source>
        <translation>Kopiuje wersje, ustawienia i końce dzienników, bez nazw, haseł i adresów</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Pomoc</translation>
    </message>
    <message>
        <source>Opens the guide in your browser; F1 does so in every window</source>
        <translation>Otwiera przewodnik w przeglądarce; F1 robi to w każdym oknie</translation>
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
        <translation>Quorvane wymaga uprawnień administratora</translation>
    </message>
    <message>
        <source>They start and stop OpenVPN and set the DNS servers. Enter the name and the password of an administrator of this computer.</source>
        <translation>Służą one do uruchamiania i zatrzymywania OpenVPN oraz ustawiania serwerów DNS. Wpisz nazwę i hasło administratora tego komputera.</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Nazwa:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Nazwa użytkownika</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Hasło:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Hasło</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Anuluj</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Uruchom</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandLine</name>
    <message>
        <source>Exactly one command is needed.</source>
        <translation>Potrzebne jest dokładnie jedno polecenie.</translation>
    </message>
    <message>
        <source>Unexpected argument &quot;%1&quot;.</source>
        <translation>Nieoczekiwany argument „%1”.</translation>
    </message>
    <message>
        <source>--json belongs to --status and --locations.</source>
        <translation>--json używa się z --status i --locations.</translation>
    </message>
    <message>
        <source>--follow belongs to --status.</source>
        <translation>--follow używa się z --status.</translation>
    </message>
    <message>
        <source>Controls the running copy of Quorvane. Without options, starts it.</source>
        <translation>Steruje działającą kopią programu Quorvane. Bez opcji uruchamia program.</translation>
    </message>
    <message>
        <source>For --hide: a title that --locations lists.</source>
        <translation>Dla --hide: tytuł z listy --locations.</translation>
    </message>
    <message>
        <source>Hide the IP, and print the lent one.</source>
        <translation>Ukryj IP i pokaż wypożyczony.</translation>
    </message>
    <message>
        <source>Stop hiding the IP.</source>
        <translation>Przestań ukrywać IP.</translation>
    </message>
    <message>
        <source>Change to an IP of a random location, and print it.</source>
        <translation>Zmień IP na adres z losowej lokalizacji i pokaż go.</translation>
    </message>
    <message>
        <source>Never use the present IP again; change it, and print the new one.</source>
        <translation>Nie używaj więcej bieżącego IP; zmień go i pokaż nowy.</translation>
    </message>
    <message>
        <source>Print what is hidden.</source>
        <translation>Pokaż, co jest ukryte.</translation>
    </message>
    <message>
        <source>Print the locations, one on each line.</source>
        <translation>Pokaż lokalizacje, każdą w osobnym wierszu.</translation>
    </message>
    <message>
        <source>Show the window.</source>
        <translation>Pokaż okno.</translation>
    </message>
    <message>
        <source>Quit Quorvane.</source>
        <translation>Zakończ Quorvane.</translation>
    </message>
    <message>
        <source>With --status or --locations: print JSON.</source>
        <translation>Z --status lub --locations: wypisz JSON.</translation>
    </message>
    <message>
        <source>With --status: print each change, until Quorvane quits.</source>
        <translation>Z --status: wypisuj każdą zmianę do zamknięcia programu Quorvane.</translation>
    </message>
    <message>
        <source>Lift the network lock, without a running copy.</source>
        <translation>Znieś blokadę sieci, bez działającej kopii.</translation>
    </message>
    <message>
        <source>Print the version.</source>
        <translation>Pokaż wersję.</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandRunner</name>
    <message>
        <source>Quorvane is not running, and there is no display to start it on.</source>
        <translation>Quorvane nie działa i nie ma ekranu, na którym można go uruchomić.</translation>
    </message>
    <message>
        <source>Quorvane could not be started.</source>
        <translation>Nie udało się uruchomić programu Quorvane.</translation>
    </message>
    <message>
        <source>Quorvane&apos;s window asks for an administrator&apos;s name and password.</source>
        <translation>Okno programu Quorvane prosi o nazwę i hasło administratora.</translation>
    </message>
    <message>
        <source>Quorvane is not running.</source>
        <translation>Quorvane nie działa.</translation>
    </message>
    <message>
        <source>Hidden behind %1 (%2). The real IP is %3.</source>
        <translation>Ukryty za %1 (%2). Prawdziwy adres IP to %3.</translation>
    </message>
    <message>
        <source>Searching for an available IP (%1).</source>
        <translation>Wyszukiwanie dostępnego adresu IP (%1).</translation>
    </message>
    <message>
        <source>Starting: the service has not answered yet.</source>
        <translation>Uruchamianie: usługa jeszcze nie odpowiedziała.</translation>
    </message>
    <message>
        <source>Not hidden: %1.</source>
        <translation>Nieukryty: %1.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>Ruch poza tunelem jest zablokowany.</translation>
    </message>
</context>
<context>
    <name>quorvane::DisplayState</name>
    <message>
        <source>Stop Hiding IP</source>
        <translation>Przestań ukrywać IP</translation>
    </message>
    <message>
        <source>WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!</source>
        <translation>OSTRZEŻENIE! TWÓJ PRAWDZIWY ADRES IP NIE JEST TERAZ UKRYTY!</translation>
    </message>
    <message>
        <source>Searching for an available IP...</source>
        <translation>Wyszukiwanie dostępnego adresu IP…</translation>
    </message>
    <message>
        <source>You are currently hiding your real IP %1</source>
        <translation>Twój prawdziwy adres IP %1 jest teraz ukryty</translation>
    </message>
    <message>
        <source>Every location has been used in this rotation. Refresh the locations or switch &quot;US only&quot; to begin a new one.</source>
        <translation>W tej rotacji użyto już wszystkich lokalizacji. Aby rozpocząć nową, odśwież lokalizacje lub przełącz opcję „Tylko USA”.</translation>
    </message>
    <message>
        <source>There is no VPN configuration to connect with. Choose a location to get a new one.</source>
        <translation>Brak konfiguracji VPN do nawiązania połączenia. Wybierz lokalizację, aby pobrać nową.</translation>
    </message>
    <message>
        <source>Locations can be refreshed while your IP is not hidden.</source>
        <translation>Lokalizacje można odświeżyć, gdy Twój adres IP nie jest ukryty.</translation>
    </message>
    <message>
        <source>No answer through the tunnel yet</source>
        <translation>Nadal brak odpowiedzi przez tunel</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>Ruch poza tunelem jest zablokowany.</translation>
    </message>
    <message>
        <source>Cannot be pressed at the moment</source>
        <translation>Teraz nie można nacisnąć</translation>
    </message>
    <message>
        <source>Stops hiding your real IP</source>
        <translation>Kończy ukrywanie Twojego prawdziwego IP</translation>
    </message>
    <message>
        <source>Hides your real IP</source>
        <translation>Ukrywa Twój prawdziwy adres IP</translation>
    </message>
    <message>
        <source>Step 1 of 3: checking the administrator</source>
        <translation>Krok 1 z 3: sprawdzanie administratora</translation>
    </message>
    <message>
        <source>Step 2 of 3: getting a configuration</source>
        <translation>Krok 2 z 3: pobieranie konfiguracji</translation>
    </message>
    <message>
        <source>Step 3 of 3: starting the tunnel</source>
        <translation>Krok 3 z 3: uruchamianie tunelu</translation>
    </message>
    <message>
        <source>Choose a location, then press Quorvane.</source>
        <translation>Wybierz lokalizację i naciśnij Quorvane.</translation>
    </message>
</context>
<context>
    <name>quorvane::HideIpSession</name>
    <message>
        <source>No Internet connection detected, please check your Internet settings.
</source>
        <translation>Nie wykryto połączenia z Internetem, sprawdź ustawienia Internetu.
</translation>
    </message>
    <message>
        <source>No available server detected.
</source>
        <translation>Nie wykryto dostępnego serwera.
</translation>
    </message>
    <message>
        <source>Location is not available.</source>
        <translation>Lokalizacja jest niedostępna.</translation>
    </message>
    <message>
        <source>Please try a different location.</source>
        <translation>Spróbuj innej lokalizacji.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Błąd</translation>
    </message>
    <message>
        <source>There was a problem connecting to the Quorvane server, please check your Internet connection or firewall settings.</source>
        <translation>Wystąpił problem z połączeniem z serwerem Quorvane, sprawdź połączenie z Internetem lub ustawienia zapory.</translation>
    </message>
    <message>
        <source>Your real IP is visible</source>
        <translation>Twój prawdziwy adres IP jest widoczny</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel could not be blocked, so your IP is not hidden.</source>
        <translation>Nie udało się zablokować ruchu poza tunelem, więc Twój adres IP nie jest ukryty.</translation>
    </message>
    <message>
        <source>The block of traffic outside the tunnel could not be lifted.</source>
        <translation>Nie udało się znieść blokady ruchu poza tunelem.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked</source>
        <translation>Ruch poza tunelem jest nadal zablokowany</translation>
    </message>
    <message>
        <source>Type &quot;quorvane --unlock&quot; in a terminal to lift the block.</source>
        <translation>Aby znieść blokadę, wpisz w terminalu „quorvane --unlock”.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked since Quorvane last ran.</source>
        <translation>Ruch poza tunelem jest nadal zablokowany od ostatniego działania programu Quorvane.</translation>
    </message>
    <message>
        <source>It has ended without lifting the block. Your IP is not hidden.</source>
        <translation>Zakończył się on bez zniesienia blokady. Twój adres IP nie jest ukryty.</translation>
    </message>
    <message>
        <source>Lift the Block</source>
        <translation>Znieś blokadę</translation>
    </message>
    <message>
        <source>Hide My IP</source>
        <translation>Ukryj mój adres IP</translation>
    </message>
    <message>
        <source>Your IP was changed</source>
        <translation>Twój adres IP został zmieniony</translation>
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
        <translation>Wybrany skrót klawiszowy jest już używany przez inną czynność.</translation>
    </message>
    <message>
        <source>Another program uses this combination.</source>
        <translation>Tej kombinacji używa inny program.</translation>
    </message>
    <message>
        <source>Belongs to &quot;%1&quot; until Quorvane quits.</source>
        <translation>Należy do „%1” do zamknięcia programu Quorvane.</translation>
    </message>
    <message>
        <source>This keyboard has no such key.</source>
        <translation>Ta klawiatura nie ma takiego klawisza.</translation>
    </message>
    <message>
        <source>The desktop declined this combination.</source>
        <translation>Pulpit odrzucił tę kombinację.</translation>
    </message>
    <message>
        <source>These work while any program is in front. A combination that you replace stays in force until Quorvane quits.</source>
        <translation>Działają w każdym programie. Zastąpiona kombinacja obowiązuje do zamknięcia programu Quorvane.</translation>
    </message>
    <message>
        <source>This desktop offers no global hot keys: these combinations have no effect.</source>
        <translation>Ten pulpit nie oferuje globalnych skrótów klawiszowych: te kombinacje nie działają.</translation>
    </message>
    <message>
        <source>Its settings can bind keys to commands: %1</source>
        <translation>W jego ustawieniach można przypisać klawisze do poleceń: %1</translation>
    </message>
</context>
<context>
    <name>quorvane::IpAddressesPane</name>
    <message numerus="yes">
        <source>&amp;minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>&amp;minutę</numerusform>
            <numerusform>&amp;minuty</numerusform>
            <numerusform>&amp;minut</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::LocationList</name>
    <message>
        <source>This location is full.</source>
        <translation>Ta lokalizacja jest pełna.</translation>
    </message>
    <message>
        <source>%1, full</source>
        <translation>%1, pełna</translation>
    </message>
    <message>
        <source>Random Location</source>
        <translation>Losowa lokalizacja</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenu</name>
    <message>
        <source>Location</source>
        <translation>Lokalizacja</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Inne</translation>
    </message>
    <message>
        <source>More locations are in the window</source>
        <translation>Więcej lokalizacji jest w oknie</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenuItem</name>
    <message>
        <source>Country flag</source>
        <translation>Flaga kraju</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Lokalizacja</translation>
    </message>
    <message>
        <source>Full mark</source>
        <translation>Oznaczenie „pełna”</translation>
    </message>
</context>
<context>
    <name>quorvane::LossReason</name>
    <message>
        <source>The tunnel was lost: the VPN server does not answer.</source>
        <translation>Utracono tunel: serwer VPN nie odpowiada.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN has ended.</source>
        <translation>Utracono tunel: OpenVPN zakończył działanie.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN was killed.</source>
        <translation>Utracono tunel: wymuszono zamknięcie OpenVPN.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its network device is gone.</source>
        <translation>Utracono tunel: zniknęło jego urządzenie sieciowe.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its routes were changed.</source>
        <translation>Utracono tunel: zmieniono jego trasy.</translation>
    </message>
</context>
<context>
    <name>quorvane::MainWindow</name>
    <message>
        <source>State picture</source>
        <translation>Obraz stanu</translation>
    </message>
    <message>
        <source>Status line</source>
        <translation>Wiersz stanu</translation>
    </message>
    <message>
        <source>Current IP address</source>
        <translation>Bieżący adres IP</translation>
    </message>
    <message>
        <source>Country flag</source>
        <translation>Flaga kraju</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>Lokalizacja:</translation>
    </message>
    <message>
        <source>Location label</source>
        <translation>Etykieta lokalizacji</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Lokalizacja</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>Uwaga</translation>
    </message>
    <message>
        <source>Second notice</source>
        <translation>Druga uwaga</translation>
    </message>
    <message>
        <source>Asking the service</source>
        <translation>Odpytywanie usługi</translation>
    </message>
    <message>
        <source>&amp;Change IP</source>
        <translation>&amp;Zmień IP</translation>
    </message>
    <message>
        <source>Change IP</source>
        <translation>Zmień IP</translation>
    </message>
    <message>
        <source>&amp;Discard IP</source>
        <translation>&amp;Odrzuć IP</translation>
    </message>
    <message>
        <source>Discard IP</source>
        <translation>Odrzuć IP</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>Zmieniaj &amp;IP co</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Minuty między zmianami IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Minuty, zmiana krokowa</translation>
    </message>
    <message>
        <source>&amp;US only</source>
        <translation>Tylko &amp;USA</translation>
    </message>
    <message>
        <source>Do not &amp;repeat IPs</source>
        <translation>&amp;Nie powtarzaj adresów IP</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>U&amp;stawienia</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Ustawienia</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Nasza witryna</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>O programie Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Zakończ Quorvane</translation>
    </message>
    <message>
        <source>Flag: %1</source>
        <translation>Flaga: %1</translation>
    </message>
    <message>
        <source>IP hidden</source>
        <translation>IP ukryty</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Wyszukiwanie</translation>
    </message>
    <message>
        <source>IP not hidden</source>
        <translation>IP nieukryty</translation>
    </message>
    <message>
        <source>Address notice</source>
        <translation>Uwaga o adresie</translation>
    </message>
    <message>
        <source>Notice of the block</source>
        <translation>Uwaga o blokadzie</translation>
    </message>
    <message>
        <source>Lift the &amp;Block</source>
        <translation>Znieś &amp;blokadę</translation>
    </message>
    <message>
        <source>Lift the block of traffic outside the tunnel</source>
        <translation>Znieś blokadę ruchu poza tunelem</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Postęp</translation>
    </message>
    <message>
        <source>%1 (%2 s)</source>
        <translation>%1 (%2 s)</translation>
    </message>
    <message>
        <source>R&amp;otation</source>
        <translation>&amp;Rotacja</translation>
    </message>
    <message>
        <source>Shows or hides the controls of the rotation</source>
        <translation>Pokazuje lub ukrywa elementy sterujące rotacją</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Zakończ</translation>
    </message>
    <message numerus="yes">
        <source>minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>minutę</numerusform>
            <numerusform>minuty</numerusform>
            <numerusform>minut</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::NetworkLock</name>
    <message>
        <source>The address of the Quorvane server was not found.</source>
        <translation>Nie znaleziono adresu serwera Quorvane.</translation>
    </message>
    <message>
        <source>The administrator&apos;s name and password are not known.</source>
        <translation>Nazwa i hasło administratora nie są znane.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAboutWindowController</name>
    <message>
        <source>%1 built %2</source>
        <translation>%1, kompilacja z %2</translation>
    </message>
    <message>
        <source>Diagnostics Copied</source>
        <translation>Skopiowano diagnostykę</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvApplicationController</name>
    <message>
        <source>Quorvane is already running.</source>
        <translation>Quorvane już działa.</translation>
    </message>
    <message>
        <source>There is already a copy of Quorvane running. This copy cannot be opened until that instance is quit.</source>
        <translation>Inna kopia programu Quorvane już działa. Tej kopii nie można otworzyć, dopóki tamta nie zostanie zamknięta.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAuthenticationWindowController</name>
    <message>
        <source>You input wrong user name or password.
</source>
        <translation>Nazwa użytkownika lub hasło są nieprawidłowe.
</translation>
    </message>
    <message>
        <source>The administrator&apos;s account asks for more than its password: &quot;%1&quot;</source>
        <translation>Konto administratora wymaga czegoś więcej niż hasła: „%1”</translation>
    </message>
    <message>
        <source>Quorvane can answer the question for the password only. The password was not used for any other question.</source>
        <translation>Quorvane może odpowiedzieć tylko na pytanie o hasło. Hasła nie użyto przy żadnym innym pytaniu.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvDiscardIpTableViewController</name>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Odrzucone adresy IP</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvLocationPaneController</name>
    <message>
        <source>Always Use Same IP &amp;Address</source>
        <translation>Zawsze używaj tego samego &amp;adresu IP</translation>
    </message>
    <message>
        <source>Location choice</source>
        <translation>Wybór lokalizacji</translation>
    </message>
    <message>
        <source>Please check &quot;Always Use Same IP Address&quot; when you have found a fake IP you would like to reuse</source>
        <translation>Zaznacz „Zawsze używaj tego samego adresu IP”, gdy znajdziesz wypożyczony adres IP, którego chcesz użyć ponownie</translation>
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
        <translation>Serwery nazw można przywrócić, gdy Twój adres IP nie jest ukryty.</translation>
    </message>
    <message>
        <source>The name servers could not be put back.</source>
        <translation>Nie udało się przywrócić serwerów nazw.</translation>
    </message>
</context>
<context>
    <name>quorvane::SessionControl</name>
    <message>
        <source>Quorvane was quit.</source>
        <translation>Zamknięto program Quorvane.</translation>
    </message>
    <message>
        <source>There is no location &quot;%1&quot;.</source>
        <translation>Nie ma lokalizacji „%1”.</translation>
    </message>
    <message>
        <source>Your IP is not hidden.</source>
        <translation>Twój adres IP nie jest ukryty.</translation>
    </message>
    <message>
        <source>No IP could be hidden.</source>
        <translation>Nie udało się ukryć żadnego adresu IP.</translation>
    </message>
    <message>
        <source>No administrator&apos;s name and password were given.</source>
        <translation>Nie podano nazwy i hasła administratora.</translation>
    </message>
    <message>
        <source>The service has not answered yet.</source>
        <translation>Usługa jeszcze nie odpowiedziała.</translation>
    </message>
</context>
<context>
    <name>quorvane::Settings</name>
    <message>
        <source>Quorvane Settings</source>
        <translation>Ustawienia Quorvane</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>Panele</translation>
    </message>
    <message>
        <source>Our &amp;Website</source>
        <translation>Nasza &amp;witryna</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Nasza witryna</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Anuluj</translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation>&amp;Zastosuj</translation>
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
        <translation>Zos&amp;taw user agent przeglądarki</translation>
    </message>
    <message>
        <source>&amp;Use this user agent:</source>
        <translation>&amp;Użyj tego user agenta:</translation>
    </message>
    <message>
        <source>User agent</source>
        <translation>User agent</translation>
    </message>
    <message>
        <source>Choose a user agent</source>
        <translation>Wybierz user agent</translation>
    </message>
    <message>
        <source>&amp;Hide my referrer header</source>
        <translation>Ukryj &amp;mój nagłówek Referer</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsBrowsers</name>
    <message>
        <source>Browsers:</source>
        <translation>Przeglądarki:</translation>
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
        <translation>Ukryj &amp;moje nagłówki cookie</translation>
    </message>
    <message>
        <source>Cookie &amp;sites:</source>
        <translation>Wi&amp;tryny cookie:</translation>
    </message>
    <message>
        <source>Cookie sites</source>
        <translation>Witryny cookie</translation>
    </message>
    <message>
        <source>No site is listed.</source>
        <translation>Brak witryn na liście.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Usuń</translation>
    </message>
    <message>
        <source>Delete the selected site</source>
        <translation>Usuń zaznaczoną witrynę</translation>
    </message>
    <message>
        <source>&amp;New site:</source>
        <translation>&amp;Nowa witryna:</translation>
    </message>
    <message>
        <source>New cookie site</source>
        <translation>Nowa witryna cookie</translation>
    </message>
    <message>
        <source>A&amp;dd</source>
        <translation>&amp;Dodaj</translation>
    </message>
    <message>
        <source>Add the site</source>
        <translation>Dodaj witrynę</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsHotkeys</name>
    <message>
        <source>&amp;Hide IP:</source>
        <translation>&amp;Ukryj IP:</translation>
    </message>
    <message>
        <source>Hide IP, hot key</source>
        <translation>Ukryj IP, skrót klawiszowy</translation>
    </message>
    <message>
        <source>Hide IP, problem</source>
        <translation>Ukryj IP, problem</translation>
    </message>
    <message>
        <source>Chan&amp;ge IP:</source>
        <translation>Zmień &amp;IP:</translation>
    </message>
    <message>
        <source>Change IP, hot key</source>
        <translation>Zmień IP, skrót klawiszowy</translation>
    </message>
    <message>
        <source>Change IP, problem</source>
        <translation>Zmień IP, problem</translation>
    </message>
    <message>
        <source>&amp;Stop hiding IP:</source>
        <translation>Prze&amp;stań ukrywać IP:</translation>
    </message>
    <message>
        <source>Stop hiding IP, hot key</source>
        <translation>Przestań ukrywać IP, skrót klawiszowy</translation>
    </message>
    <message>
        <source>Stop hiding IP, problem</source>
        <translation>Przestań ukrywać IP, problem</translation>
    </message>
    <message>
        <source>&amp;Discard IP:</source>
        <translation>O&amp;drzuć IP:</translation>
    </message>
    <message>
        <source>Discard IP, hot key</source>
        <translation>Odrzuć IP, skrót klawiszowy</translation>
    </message>
    <message>
        <source>Discard IP, problem</source>
        <translation>Odrzuć IP, problem</translation>
    </message>
    <message>
        <source>&amp;Bring up window:</source>
        <translation>&amp;Pokaż okno:</translation>
    </message>
    <message>
        <source>Bring up window, hot key</source>
        <translation>Pokaż okno, skrót klawiszowy</translation>
    </message>
    <message>
        <source>Bring up window, problem</source>
        <translation>Pokaż okno, problem</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsIpAddresses</name>
    <message>
        <source>&amp;Discarded IP addresses:</source>
        <translation>O&amp;drzucone adresy IP:</translation>
    </message>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Odrzucone adresy IP</translation>
    </message>
    <message>
        <source>No address is discarded. Discard IP puts the address in use here.</source>
        <translation>Brak odrzuconych adresów. „Odrzuć IP” dodaje tu używany adres.</translation>
    </message>
    <message>
        <source>Quorvane does not connect to these addresses again.</source>
        <translation>Quorvane nie łączy się ponownie z tymi adresami.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Usuń</translation>
    </message>
    <message>
        <source>Delete the selected address</source>
        <translation>Usuń zaznaczony adres</translation>
    </message>
    <message>
        <source>Clea&amp;r</source>
        <translation>Wy&amp;czyść</translation>
    </message>
    <message>
        <source>Clear the list of addresses</source>
        <translation>Wyczyść listę adresów</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>Zmieniaj &amp;IP co</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Minuty między zmianami IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Minuty, zmiana krokowa</translation>
    </message>
    <message>
        <source>&amp;Hide my IP when Quorvane starts</source>
        <translation>Ukryj mój adres IP po uruchomieniu &amp;Quorvane</translation>
    </message>
    <message>
        <source>&amp;Start Quorvane when I log in</source>
        <translation>Uruc&amp;hamiaj Quorvane po zalogowaniu</translation>
    </message>
    <message>
        <source>Put &amp;back my name servers when I stop hiding</source>
        <translation>P&amp;rzywróć moje serwery nazw po zakończeniu ukrywania</translation>
    </message>
    <message>
        <source>Quorvane uses 8.8.8.8 and 8.8.4.4 in place of them.</source>
        <translation>Quorvane używa zamiast nich 8.8.8.8 i 8.8.4.4.</translation>
    </message>
    <message>
        <source>Put Back &amp;Now</source>
        <translation>&amp;Przywróć teraz</translation>
    </message>
    <message>
        <source>Put back my name servers now</source>
        <translation>Przywróć teraz moje serwery nazw</translation>
    </message>
    <message>
        <source>Reconnect when the &amp;tunnel is lost</source>
        <translation>Połącz ponownie po utracie &amp;tunelu</translation>
    </message>
    <message>
        <source>Network lock</source>
        <translation>Blokada sieci</translation>
    </message>
    <message>
        <source>From the moment you hide your IP until you stop, nothing leaves this computer but the tunnel, even when the tunnel or Quorvane fails.</source>
        <translation>Od ukrycia IP do zakończenia ukrywania nic nie opuszcza tego komputera poza tunelem, nawet gdy tunel lub Quorvane zawiedzie.</translation>
    </message>
    <message>
        <source>Block tra&amp;ffic outside the tunnel</source>
        <translation>&amp;Blokuj ruch poza tunelem</translation>
    </message>
    <message>
        <source>Allow my home networ&amp;k all the same</source>
        <translation>Mimo to zezwalaj &amp;na moją sieć domową</translation>
    </message>
    <message>
        <source>Windows:</source>
        <translation>Okna:</translation>
    </message>
    <message>
        <source>as the deskto&amp;p</source>
        <translation>ja&amp;k pulpit</translation>
    </message>
    <message>
        <source>alwa&amp;ys dark</source>
        <translation>zaw&amp;sze ciemne</translation>
    </message>
    <message>
        <source>always li&amp;ght</source>
        <translation>zawsze &amp;jasne</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsToolbar</name>
    <message>
        <source>IP Addresses</source>
        <translation>Adresy IP</translation>
    </message>
    <message>
        <source>Cookie Crumble</source>
        <translation>Okruszki cookie</translation>
    </message>
    <message>
        <source>Hot Keys</source>
        <translation>Skróty</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>Zaawansowane</translation>
    </message>
    <message>
        <source>Test VPN</source>
        <translation>Testowy VPN</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsVpn</name>
    <message>
        <source>A configuration of your own, for testing. Save stores it at once.</source>
        <translation>Własna konfiguracja do testów. „Zapisz” zachowuje ją od razu.</translation>
    </message>
    <message>
        <source>Con&amp;figuration:</source>
        <translation>&amp;Konfiguracja:</translation>
    </message>
    <message>
        <source>Path of the configuration file</source>
        <translation>Ścieżka pliku konfiguracji</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>&amp;Przeglądaj…</translation>
    </message>
    <message>
        <source>Browse for a configuration file</source>
        <translation>Znajdź plik konfiguracji</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>Nazwa &amp;użytkownika:</translation>
    </message>
    <message>
        <source>VPN user name</source>
        <translation>Nazwa użytkownika VPN</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Hasło:</translation>
    </message>
    <message>
        <source>VPN password</source>
        <translation>Hasło VPN</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>Zapi&amp;sz</translation>
    </message>
    <message>
        <source>Save configuration and login</source>
        <translation>Zapisz konfigurację i dane logowania</translation>
    </message>
</context>
<context>
    <name>quorvane::TrayPresence</name>
    <message>
        <source>Change IP</source>
        <translation>Zmień IP</translation>
    </message>
    <message>
        <source>Copy IP</source>
        <translation>Kopiuj IP</translation>
    </message>
    <message>
        <source>Check IP in Browser</source>
        <translation>Sprawdź IP w przeglądarce</translation>
    </message>
    <message>
        <source>Show Quorvane</source>
        <translation>Pokaż Quorvane</translation>
    </message>
    <message>
        <source>Refresh Locations</source>
        <translation>Odśwież lokalizacje</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>Ustawienia…</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>O programie Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Zakończ Quorvane</translation>
    </message>
    <message>
        <source>Quorvane: your IP is not hidden</source>
        <translation>Quorvane: Twój adres IP nie jest ukryty</translation>
    </message>
    <message>
        <source>Quorvane: searching for an available IP</source>
        <translation>Quorvane: wyszukiwanie dostępnego adresu IP</translation>
    </message>
    <message>
        <source>Quorvane: your IP is hidden behind %1</source>
        <translation>Quorvane: Twój adres IP jest ukryty za %1</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Pomoc</translation>
    </message>
</context>
<context>
    <name>quorvane::VpnPane</name>
    <message>
        <source>Open OpenVPN Configuration</source>
        <translation>Otwórz konfigurację OpenVPN</translation>
    </message>
    <message>
        <source>OpenVPN configurations (%1)</source>
        <translation>Konfiguracje OpenVPN (%1)</translation>
    </message>
</context>
<context>
    <name>quorvane::WebPages</name>
    <message>
        <source>No web browser could be opened.</source>
        <translation>Nie udało się otworzyć przeglądarki.</translation>
    </message>
    <message>
        <source>The page is %1</source>
        <translation>Strona: %1</translation>
    </message>
</context>
</TS>
