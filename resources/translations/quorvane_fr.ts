<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en_US">
<context>
    <name>HotKeyTable</name>
    <message>
        <source>Down arrow</source>
        <translation>Flèche bas</translation>
    </message>
    <message>
        <source>Left arrow</source>
        <translation>Flèche gauche</translation>
    </message>
    <message>
        <source>Right arrow</source>
        <translation>Flèche droite</translation>
    </message>
    <message>
        <source>Up arrow</source>
        <translation>Flèche haut</translation>
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
        <translation>Maj + %1</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Aucun</translation>
    </message>
</context>
<context>
    <name>Reachability</name>
    <message>
        <source>Cellular</source>
        <translation>Réseau mobile</translation>
    </message>
    <message>
        <source>WiFi</source>
        <translation>Wi-Fi</translation>
    </message>
    <message>
        <source>No Connection</source>
        <translation>Aucune connexion</translation>
    </message>
</context>
<context>
    <name>Start</name>
    <message>
        <source>The program&apos;s files are not safe.</source>
        <translation>Les fichiers du programme ne sont pas sûrs.</translation>
    </message>
    <message>
        <source>Another user can change &quot;%1&quot;. It would be run with administrator rights. Please install the program again.</source>
        <translation>Un autre utilisateur peut modifier « %1 », qui serait exécuté avec les droits d’administrateur. Veuillez réinstaller le programme.</translation>
    </message>
</context>
<context>
    <name>quorvane::About</name>
    <message>
        <source>About Quorvane</source>
        <translation>À propos de Quorvane</translation>
    </message>
    <message>
        <source>Quorvane&apos;s icon</source>
        <translation>Icône de Quorvane</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Hides your IP address behind one that you were lent.</source>
        <translation>Masque votre adresse IP derrière une adresse qui vous est prêtée.</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Notre site web</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Copy Diagnostics</source>
        <translation>Copier le diagnostic</translation>
    </message>
    <message>
        <source>Copies versions, settings and the ends of the logs, without names, passwords and addresses</source>
        <translation>Copie les versions, les réglages et la fin des journaux, sans noms, mots de passe ni adresses</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>Opens the guide in your browser; F1 does so in every window</source>
        <translation>Ouvre le guide dans votre navigateur ; F1 le fait dans chaque fenêtre</translation>
    </message>
</context>
<context>
    <name>quorvane::AuthenticaionView</name>
    <message>
        <source>Quorvane - Administrator</source>
        <translation>Quorvane - Administrateur</translation>
    </message>
    <message>
        <source>Quorvane needs administrator rights</source>
        <translation>Quorvane nécessite les droits d’administrateur</translation>
    </message>
    <message>
        <source>They start and stop OpenVPN and set the DNS servers. Enter the name and the password of an administrator of this computer.</source>
        <translation>Ils servent à démarrer et à arrêter OpenVPN et à définir les serveurs DNS. Saisissez le nom et le mot de passe d’un administrateur de cet ordinateur.</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Nom&#xa0;:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Nom d’utilisateur</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>Mot de &amp;passe&#xa0;:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Mot de passe</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Démarrer</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandLine</name>
    <message>
        <source>Exactly one command is needed.</source>
        <translation>Il faut exactement une commande.</translation>
    </message>
    <message>
        <source>Unexpected argument &quot;%1&quot;.</source>
        <translation>Argument inattendu «&#xa0;%1&#xa0;».</translation>
    </message>
    <message>
        <source>--json belongs to --status and --locations.</source>
        <translation>--json va avec --status et --locations.</translation>
    </message>
    <message>
        <source>--follow belongs to --status.</source>
        <translation>--follow va avec --status.</translation>
    </message>
    <message>
        <source>Controls the running copy of Quorvane. Without options, starts it.</source>
        <translation>Commande la copie en cours de Quorvane. Sans option, démarre Quorvane.</translation>
    </message>
    <message>
        <source>For --hide: a title that --locations lists.</source>
        <translation>Pour --hide&#xa0;: un titre que --locations affiche.</translation>
    </message>
    <message>
        <source>Hide the IP, and print the lent one.</source>
        <translation>Masquer l’IP et afficher celle qui est prêtée.</translation>
    </message>
    <message>
        <source>Stop hiding the IP.</source>
        <translation>Ne plus masquer l’IP.</translation>
    </message>
    <message>
        <source>Change to an IP of a random location, and print it.</source>
        <translation>Prendre une IP d’un emplacement aléatoire et l’afficher.</translation>
    </message>
    <message>
        <source>Never use the present IP again; change it, and print the new one.</source>
        <translation>Ne plus jamais utiliser l’IP actuelle&#xa0;; en changer et afficher la nouvelle.</translation>
    </message>
    <message>
        <source>Print what is hidden.</source>
        <translation>Afficher ce qui est masqué.</translation>
    </message>
    <message>
        <source>Print the locations, one on each line.</source>
        <translation>Afficher les emplacements, un par ligne.</translation>
    </message>
    <message>
        <source>Show the window.</source>
        <translation>Afficher la fenêtre.</translation>
    </message>
    <message>
        <source>Quit Quorvane.</source>
        <translation>Quitter Quorvane.</translation>
    </message>
    <message>
        <source>With --status or --locations: print JSON.</source>
        <translation>Avec --status ou --locations&#xa0;: écrire du JSON.</translation>
    </message>
    <message>
        <source>With --status: print each change, until Quorvane quits.</source>
        <translation>Avec --status&#xa0;: afficher chaque changement jusqu’à la fermeture de Quorvane.</translation>
    </message>
    <message>
        <source>Lift the network lock, without a running copy.</source>
        <translation>Lever le verrou réseau, sans copie en cours.</translation>
    </message>
    <message>
        <source>Print the version.</source>
        <translation>Afficher la version.</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandRunner</name>
    <message>
        <source>Quorvane is not running, and there is no display to start it on.</source>
        <translation>Quorvane n’est pas en cours d’exécution et il n’y a pas d’écran sur lequel le démarrer.</translation>
    </message>
    <message>
        <source>Quorvane could not be started.</source>
        <translation>Quorvane n’a pas pu être démarré.</translation>
    </message>
    <message>
        <source>Quorvane&apos;s window asks for an administrator&apos;s name and password.</source>
        <translation>La fenêtre de Quorvane demande le nom et le mot de passe d’un administrateur.</translation>
    </message>
    <message>
        <source>Quorvane is not running.</source>
        <translation>Quorvane n’est pas en cours d’exécution.</translation>
    </message>
    <message>
        <source>Hidden behind %1 (%2). The real IP is %3.</source>
        <translation>Masquée derrière %1 (%2). L’IP réelle est %3.</translation>
    </message>
    <message>
        <source>Searching for an available IP (%1).</source>
        <translation>Recherche d’une IP disponible (%1).</translation>
    </message>
    <message>
        <source>Starting: the service has not answered yet.</source>
        <translation>Démarrage&#xa0;: le service n’a pas encore répondu.</translation>
    </message>
    <message>
        <source>Not hidden: %1.</source>
        <translation>Non masquée&#xa0;: %1.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>Le trafic hors du tunnel est bloqué.</translation>
    </message>
</context>
<context>
    <name>quorvane::DisplayState</name>
    <message>
        <source>Stop Hiding IP</source>
        <translation>Ne plus masquer l’IP</translation>
    </message>
    <message>
        <source>WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!</source>
        <translation>ATTENTION&#xa0;! VOTRE IP RÉELLE N’EST ACTUELLEMENT PAS MASQUÉE&#xa0;!</translation>
    </message>
    <message>
        <source>Searching for an available IP...</source>
        <translation>Recherche d’une IP disponible…</translation>
    </message>
    <message>
        <source>You are currently hiding your real IP %1</source>
        <translation>Votre IP réelle %1 est actuellement masquée</translation>
    </message>
    <message>
        <source>Every location has been used in this rotation. Refresh the locations or switch &quot;US only&quot; to begin a new one.</source>
        <translation>Tous les emplacements ont été utilisés dans cette rotation. Actualisez les emplacements ou basculez «&#xa0;États-Unis seuls&#xa0;» pour en commencer une nouvelle.</translation>
    </message>
    <message>
        <source>There is no VPN configuration to connect with. Choose a location to get a new one.</source>
        <translation>Il n’y a pas de configuration VPN pour se connecter. Choisissez un emplacement pour en obtenir une nouvelle.</translation>
    </message>
    <message>
        <source>Locations can be refreshed while your IP is not hidden.</source>
        <translation>Les emplacements peuvent être actualisés tant que votre IP n’est pas masquée.</translation>
    </message>
    <message>
        <source>No answer through the tunnel yet</source>
        <translation>Pas encore de réponse à travers le tunnel</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>Le trafic hors du tunnel est bloqué.</translation>
    </message>
    <message>
        <source>Cannot be pressed at the moment</source>
        <translation>Indisponible pour le moment</translation>
    </message>
    <message>
        <source>Stops hiding your real IP</source>
        <translation>Cesse de masquer votre IP réelle</translation>
    </message>
    <message>
        <source>Hides your real IP</source>
        <translation>Masque votre IP réelle</translation>
    </message>
    <message>
        <source>Step 1 of 3: checking the administrator</source>
        <translation>Étape 1 sur 3&#xa0;: vérification de l’administrateur</translation>
    </message>
    <message>
        <source>Step 2 of 3: getting a configuration</source>
        <translation>Étape 2 sur 3&#xa0;: obtention d’une configuration</translation>
    </message>
    <message>
        <source>Step 3 of 3: starting the tunnel</source>
        <translation>Étape 3 sur 3&#xa0;: démarrage du tunnel</translation>
    </message>
    <message>
        <source>Choose a location, then press Quorvane.</source>
        <translation>Choisissez un emplacement, puis cliquez sur Quorvane.</translation>
    </message>
</context>
<context>
    <name>quorvane::HideIpSession</name>
    <message>
        <source>No Internet connection detected, please check your Internet settings.
</source>
        <translation>Aucune connexion Internet détectée, veuillez vérifier vos paramètres Internet.
</translation>
    </message>
    <message>
        <source>No available server detected.
</source>
        <translation>Aucun serveur disponible détecté.
</translation>
    </message>
    <message>
        <source>Location is not available.</source>
        <translation>L’emplacement n’est pas disponible.</translation>
    </message>
    <message>
        <source>Please try a different location.</source>
        <translation>Veuillez essayer un autre emplacement.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>There was a problem connecting to the Quorvane server, please check your Internet connection or firewall settings.</source>
        <translation>La connexion au serveur Quorvane a échoué, veuillez vérifier votre connexion Internet ou les paramètres de votre pare-feu.</translation>
    </message>
    <message>
        <source>Your real IP is visible</source>
        <translation>Votre IP réelle est visible</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel could not be blocked, so your IP is not hidden.</source>
        <translation>Le trafic hors du tunnel n’a pas pu être bloqué&#xa0;; votre IP n’est donc pas masquée.</translation>
    </message>
    <message>
        <source>The block of traffic outside the tunnel could not be lifted.</source>
        <translation>Le blocage du trafic hors du tunnel n’a pas pu être levé.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked</source>
        <translation>Le trafic hors du tunnel est toujours bloqué</translation>
    </message>
    <message>
        <source>Type &quot;quorvane --unlock&quot; in a terminal to lift the block.</source>
        <translation>Saisissez «&#xa0;quorvane --unlock&#xa0;» dans un terminal pour lever le blocage.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked since Quorvane last ran.</source>
        <translation>Le trafic hors du tunnel est toujours bloqué depuis la dernière exécution de Quorvane.</translation>
    </message>
    <message>
        <source>It has ended without lifting the block. Your IP is not hidden.</source>
        <translation>Il s’est arrêté sans lever le blocage. Votre IP n’est pas masquée.</translation>
    </message>
    <message>
        <source>Lift the Block</source>
        <translation>Lever le blocage</translation>
    </message>
    <message>
        <source>Hide My IP</source>
        <translation>Masquer mon IP</translation>
    </message>
    <message>
        <source>Your IP was changed</source>
        <translation>Votre IP a été changée</translation>
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
        <translation>Le raccourci choisi est déjà utilisé par une autre action.</translation>
    </message>
    <message>
        <source>Another program uses this combination.</source>
        <translation>Un autre programme utilise cette combinaison.</translation>
    </message>
    <message>
        <source>Belongs to &quot;%1&quot; until Quorvane quits.</source>
        <translation>Réservé à «&#xa0;%1&#xa0;» jusqu’à la fermeture de Quorvane.</translation>
    </message>
    <message>
        <source>This keyboard has no such key.</source>
        <translation>Ce clavier n’a pas cette touche.</translation>
    </message>
    <message>
        <source>The desktop declined this combination.</source>
        <translation>Le bureau a refusé cette combinaison.</translation>
    </message>
    <message>
        <source>These work while any program is in front. A combination that you replace stays in force until Quorvane quits.</source>
        <translation>Ils fonctionnent quel que soit le programme au premier plan. Une combinaison remplacée reste active jusqu’à la fermeture de Quorvane.</translation>
    </message>
    <message>
        <source>This desktop offers no global hot keys: these combinations have no effect.</source>
        <translation>Ce bureau ne propose pas de raccourcis globaux&#xa0;: ces combinaisons sont sans effet.</translation>
    </message>
    <message>
        <source>Its settings can bind keys to commands: %1</source>
        <translation>Ses paramètres permettent d’associer des touches à des commandes&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>quorvane::IpAddressesPane</name>
    <message numerus="yes">
        <source>&amp;minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>&amp;minute</numerusform>
            <numerusform>&amp;minutes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::LocationList</name>
    <message>
        <source>This location is full.</source>
        <translation>Cet emplacement est complet.</translation>
    </message>
    <message>
        <source>%1, full</source>
        <translation>%1, complet</translation>
    </message>
    <message>
        <source>Random Location</source>
        <translation>Emplacement aléatoire</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenu</name>
    <message>
        <source>Location</source>
        <translation>Emplacement</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Autre</translation>
    </message>
    <message>
        <source>More locations are in the window</source>
        <translation>D’autres emplacements se trouvent dans la fenêtre</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenuItem</name>
    <message>
        <source>Country flag</source>
        <translation>Drapeau du pays</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Emplacement</translation>
    </message>
    <message>
        <source>Full mark</source>
        <translation>Marque «&#xa0;complet&#xa0;»</translation>
    </message>
</context>
<context>
    <name>quorvane::LossReason</name>
    <message>
        <source>The tunnel was lost: the VPN server does not answer.</source>
        <translation>Le tunnel a été perdu&#xa0;: le serveur VPN ne répond pas.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN has ended.</source>
        <translation>Le tunnel a été perdu&#xa0;: OpenVPN s’est arrêté.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN was killed.</source>
        <translation>Le tunnel a été perdu&#xa0;: OpenVPN a été tué.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its network device is gone.</source>
        <translation>Le tunnel a été perdu&#xa0;: son périphérique réseau a disparu.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its routes were changed.</source>
        <translation>Le tunnel a été perdu&#xa0;: ses routes ont été modifiées.</translation>
    </message>
</context>
<context>
    <name>quorvane::MainWindow</name>
    <message>
        <source>State picture</source>
        <translation>Image d’état</translation>
    </message>
    <message>
        <source>Status line</source>
        <translation>Ligne d’état</translation>
    </message>
    <message>
        <source>Current IP address</source>
        <translation>Adresse IP actuelle</translation>
    </message>
    <message>
        <source>Country flag</source>
        <translation>Drapeau du pays</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>Emplacement&#xa0;:</translation>
    </message>
    <message>
        <source>Location label</source>
        <translation>Libellé de l’emplacement</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Emplacement</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>Remarque</translation>
    </message>
    <message>
        <source>Second notice</source>
        <translation>Deuxième remarque</translation>
    </message>
    <message>
        <source>Asking the service</source>
        <translation>Interrogation du service</translation>
    </message>
    <message>
        <source>&amp;Change IP</source>
        <translation>&amp;Changer d’IP</translation>
    </message>
    <message>
        <source>Change IP</source>
        <translation>Changer d’IP</translation>
    </message>
    <message>
        <source>&amp;Discard IP</source>
        <translation>Rejeter &amp;l’IP</translation>
    </message>
    <message>
        <source>Discard IP</source>
        <translation>Rejeter l’IP</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>Changer &amp;d’IP toutes les</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Minutes entre les changements d’IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Minutes, pas à pas</translation>
    </message>
    <message>
        <source>&amp;US only</source>
        <translation>États-&amp;Unis seuls</translation>
    </message>
    <message>
        <source>Do not &amp;repeat IPs</source>
        <translation>&amp;Ne pas répéter les IP</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>&amp;Paramètres</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Notre site web</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>À propos de Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Quitter Quorvane</translation>
    </message>
    <message>
        <source>Flag: %1</source>
        <translation>Drapeau&#xa0;: %1</translation>
    </message>
    <message>
        <source>IP hidden</source>
        <translation>IP masquée</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Recherche en cours</translation>
    </message>
    <message>
        <source>IP not hidden</source>
        <translation>IP non masquée</translation>
    </message>
    <message>
        <source>Address notice</source>
        <translation>Remarque sur l’adresse</translation>
    </message>
    <message>
        <source>Notice of the block</source>
        <translation>Remarque sur le blocage</translation>
    </message>
    <message>
        <source>Lift the &amp;Block</source>
        <translation>Lever le &amp;blocage</translation>
    </message>
    <message>
        <source>Lift the block of traffic outside the tunnel</source>
        <translation>Lever le blocage du trafic hors du tunnel</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
    <message>
        <source>%1 (%2 s)</source>
        <translation>%1 (%2 s)</translation>
    </message>
    <message>
        <source>R&amp;otation</source>
        <translation>&amp;Rotation</translation>
    </message>
    <message>
        <source>Shows or hides the controls of the rotation</source>
        <translation>Affiche ou masque les commandes de la rotation</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message numerus="yes">
        <source>minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>minute</numerusform>
            <numerusform>minutes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::NetworkLock</name>
    <message>
        <source>The address of the Quorvane server was not found.</source>
        <translation>L’adresse du serveur Quorvane est introuvable.</translation>
    </message>
    <message>
        <source>The administrator&apos;s name and password are not known.</source>
        <translation>Le nom et le mot de passe de l’administrateur ne sont pas connus.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAboutWindowController</name>
    <message>
        <source>%1 built %2</source>
        <translation>%1, compilée le %2</translation>
    </message>
    <message>
        <source>Diagnostics Copied</source>
        <translation>Diagnostic copié</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvApplicationController</name>
    <message>
        <source>Quorvane is already running.</source>
        <translation>Quorvane est déjà en cours d’exécution.</translation>
    </message>
    <message>
        <source>There is already a copy of Quorvane running. This copy cannot be opened until that instance is quit.</source>
        <translation>Une copie de Quorvane est déjà en cours d’exécution. Cette copie ne peut pas être ouverte tant que l’autre n’a pas été quittée.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAuthenticationWindowController</name>
    <message>
        <source>You input wrong user name or password.
</source>
        <translation>Le nom d’utilisateur ou le mot de passe est incorrect.
</translation>
    </message>
    <message>
        <source>The administrator&apos;s account asks for more than its password: &quot;%1&quot;</source>
        <translation>Le compte de l’administrateur demande plus que son mot de passe&#xa0;: «&#xa0;%1&#xa0;»</translation>
    </message>
    <message>
        <source>Quorvane can answer the question for the password only. The password was not used for any other question.</source>
        <translation>Quorvane ne peut répondre qu’à la demande du mot de passe. Le mot de passe n’a été utilisé pour aucune autre question.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvDiscardIpTableViewController</name>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Adresses IP rejetées</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvLocationPaneController</name>
    <message>
        <source>Always Use Same IP &amp;Address</source>
        <translation>Toujours utiliser la même &amp;adresse IP</translation>
    </message>
    <message>
        <source>Location choice</source>
        <translation>Choix de l’emplacement</translation>
    </message>
    <message>
        <source>Please check &quot;Always Use Same IP Address&quot; when you have found a fake IP you would like to reuse</source>
        <translation>Cochez «&#xa0;Toujours utiliser la même adresse IP&#xa0;» quand vous avez trouvé une IP d’emprunt que vous souhaitez réutiliser</translation>
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
        <translation>Les serveurs de noms peuvent être rétablis tant que votre IP n’est pas masquée.</translation>
    </message>
    <message>
        <source>The name servers could not be put back.</source>
        <translation>Les serveurs de noms n’ont pas pu être rétablis.</translation>
    </message>
</context>
<context>
    <name>quorvane::SessionControl</name>
    <message>
        <source>Quorvane was quit.</source>
        <translation>Quorvane a été quitté.</translation>
    </message>
    <message>
        <source>There is no location &quot;%1&quot;.</source>
        <translation>Il n’y a pas d’emplacement «&#xa0;%1&#xa0;».</translation>
    </message>
    <message>
        <source>Your IP is not hidden.</source>
        <translation>Votre IP n’est pas masquée.</translation>
    </message>
    <message>
        <source>No IP could be hidden.</source>
        <translation>Aucune IP n’a pu être masquée.</translation>
    </message>
    <message>
        <source>No administrator&apos;s name and password were given.</source>
        <translation>Le nom et le mot de passe d’un administrateur n’ont pas été donnés.</translation>
    </message>
    <message>
        <source>The service has not answered yet.</source>
        <translation>Le service n’a pas encore répondu.</translation>
    </message>
</context>
<context>
    <name>quorvane::Settings</name>
    <message>
        <source>Quorvane Settings</source>
        <translation>Paramètres de Quorvane</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>Volets</translation>
    </message>
    <message>
        <source>Our &amp;Website</source>
        <translation>Notre site &amp;web</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Notre site web</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation>Appliq&amp;uer</translation>
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
        <translation>User-agent&#xa0;:</translation>
    </message>
    <message>
        <source>Leave &amp;the browser&apos;s own user agent</source>
        <translation>&amp;Garder le user-agent du navigateur</translation>
    </message>
    <message>
        <source>&amp;Use this user agent:</source>
        <translation>U&amp;tiliser ce user-agent&#xa0;:</translation>
    </message>
    <message>
        <source>User agent</source>
        <translation>User-agent</translation>
    </message>
    <message>
        <source>Choose a user agent</source>
        <translation>Choisir un user-agent</translation>
    </message>
    <message>
        <source>&amp;Hide my referrer header</source>
        <translation>&amp;Masquer mon en-tête Referer</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsBrowsers</name>
    <message>
        <source>Browsers:</source>
        <translation>Navigateurs&#xa0;:</translation>
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
        <translation>&amp;Masquer mes en-têtes de cookies</translation>
    </message>
    <message>
        <source>Cookie &amp;sites:</source>
        <translation>Si&amp;tes à cookies&#xa0;:</translation>
    </message>
    <message>
        <source>Cookie sites</source>
        <translation>Sites à cookies</translation>
    </message>
    <message>
        <source>No site is listed.</source>
        <translation>Aucun site dans la liste.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>Supp&amp;rimer</translation>
    </message>
    <message>
        <source>Delete the selected site</source>
        <translation>Supprimer le site sélectionné</translation>
    </message>
    <message>
        <source>&amp;New site:</source>
        <translation>&amp;Nouveau site&#xa0;:</translation>
    </message>
    <message>
        <source>New cookie site</source>
        <translation>Nouveau site à cookies</translation>
    </message>
    <message>
        <source>A&amp;dd</source>
        <translation>Ajout&amp;er</translation>
    </message>
    <message>
        <source>Add the site</source>
        <translation>Ajouter le site</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsHotkeys</name>
    <message>
        <source>&amp;Hide IP:</source>
        <translation>&amp;Masquer l’IP&#xa0;:</translation>
    </message>
    <message>
        <source>Hide IP, hot key</source>
        <translation>Masquer l’IP, raccourci</translation>
    </message>
    <message>
        <source>Hide IP, problem</source>
        <translation>Masquer l’IP, problème</translation>
    </message>
    <message>
        <source>Chan&amp;ge IP:</source>
        <translation>&amp;Changer d’IP&#xa0;:</translation>
    </message>
    <message>
        <source>Change IP, hot key</source>
        <translation>Changer d’IP, raccourci</translation>
    </message>
    <message>
        <source>Change IP, problem</source>
        <translation>Changer d’IP, problème</translation>
    </message>
    <message>
        <source>&amp;Stop hiding IP:</source>
        <translation>&amp;Ne plus masquer l’IP&#xa0;:</translation>
    </message>
    <message>
        <source>Stop hiding IP, hot key</source>
        <translation>Ne plus masquer l’IP, raccourci</translation>
    </message>
    <message>
        <source>Stop hiding IP, problem</source>
        <translation>Ne plus masquer l’IP, problème</translation>
    </message>
    <message>
        <source>&amp;Discard IP:</source>
        <translation>&amp;Rejeter l’IP&#xa0;:</translation>
    </message>
    <message>
        <source>Discard IP, hot key</source>
        <translation>Rejeter l’IP, raccourci</translation>
    </message>
    <message>
        <source>Discard IP, problem</source>
        <translation>Rejeter l’IP, problème</translation>
    </message>
    <message>
        <source>&amp;Bring up window:</source>
        <translation>Afficher &amp;la fenêtre&#xa0;:</translation>
    </message>
    <message>
        <source>Bring up window, hot key</source>
        <translation>Afficher la fenêtre, raccourci</translation>
    </message>
    <message>
        <source>Bring up window, problem</source>
        <translation>Afficher la fenêtre, problème</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsIpAddresses</name>
    <message>
        <source>&amp;Discarded IP addresses:</source>
        <translation>Adresses &amp;IP rejetées&#xa0;:</translation>
    </message>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Adresses IP rejetées</translation>
    </message>
    <message>
        <source>No address is discarded. Discard IP puts the address in use here.</source>
        <translation>Aucune adresse rejetée. «&#xa0;Rejeter l’IP&#xa0;» inscrit ici l’adresse utilisée.</translation>
    </message>
    <message>
        <source>Quorvane does not connect to these addresses again.</source>
        <translation>Quorvane ne se connecte plus à ces adresses.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Supprimer</translation>
    </message>
    <message>
        <source>Delete the selected address</source>
        <translation>Supprimer l’adresse sélectionnée</translation>
    </message>
    <message>
        <source>Clea&amp;r</source>
        <translation>&amp;Effacer</translation>
    </message>
    <message>
        <source>Clear the list of addresses</source>
        <translation>Effacer la liste des adresses</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>C&amp;hanger d’IP toutes les</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Minutes entre les changements d’IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Minutes, pas à pas</translation>
    </message>
    <message>
        <source>&amp;Hide my IP when Quorvane starts</source>
        <translation>Masquer mon IP au démarrage de &amp;Quorvane</translation>
    </message>
    <message>
        <source>&amp;Start Quorvane when I log in</source>
        <translation>Démarrer Quor&amp;vane à l’ouverture de session</translation>
    </message>
    <message>
        <source>Put &amp;back my name servers when I stop hiding</source>
        <translation>Rétablir mes serveurs de &amp;noms à la fin du masquage</translation>
    </message>
    <message>
        <source>Quorvane uses 8.8.8.8 and 8.8.4.4 in place of them.</source>
        <translation>Quorvane utilise 8.8.8.8 et 8.8.4.4 à leur place.</translation>
    </message>
    <message>
        <source>Put Back &amp;Now</source>
        <translation>&amp;Rétablir maintenant</translation>
    </message>
    <message>
        <source>Put back my name servers now</source>
        <translation>Rétablir mes serveurs de noms maintenant</translation>
    </message>
    <message>
        <source>Reconnect when the &amp;tunnel is lost</source>
        <translation>Se reconnecter si &amp;le tunnel est perdu</translation>
    </message>
    <message>
        <source>Network lock</source>
        <translation>Verrou réseau</translation>
    </message>
    <message>
        <source>From the moment you hide your IP until you stop, nothing leaves this computer but the tunnel, even when the tunnel or Quorvane fails.</source>
        <translation>Tant que votre IP est masquée, rien ne quitte cet ordinateur hors du tunnel, même en cas de défaillance du tunnel ou de Quorvane.</translation>
    </message>
    <message>
        <source>Block tra&amp;ffic outside the tunnel</source>
        <translation>&amp;Bloquer le trafic hors du tunnel</translation>
    </message>
    <message>
        <source>Allow my home networ&amp;k all the same</source>
        <translation>Autoriser tout &amp;de même mon réseau local</translation>
    </message>
    <message>
        <source>Windows:</source>
        <translation>Fenêtres&#xa0;:</translation>
    </message>
    <message>
        <source>as the deskto&amp;p</source>
        <translation>&amp;comme le bureau</translation>
    </message>
    <message>
        <source>alwa&amp;ys dark</source>
        <translation>&amp;toujours sombres</translation>
    </message>
    <message>
        <source>always li&amp;ght</source>
        <translation>tou&amp;jours claires</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsToolbar</name>
    <message>
        <source>IP Addresses</source>
        <translation>Adresses IP</translation>
    </message>
    <message>
        <source>Cookie Crumble</source>
        <translation>Miettes de cookies</translation>
    </message>
    <message>
        <source>Hot Keys</source>
        <translation>Raccourcis</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>Avancé</translation>
    </message>
    <message>
        <source>Test VPN</source>
        <translation>VPN de test</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsVpn</name>
    <message>
        <source>A configuration of your own, for testing. Save stores it at once.</source>
        <translation>Une configuration à vous, pour les tests. «&#xa0;Enregistrer&#xa0;» la stocke aussitôt.</translation>
    </message>
    <message>
        <source>Con&amp;figuration:</source>
        <translation>&amp;Configuration&#xa0;:</translation>
    </message>
    <message>
        <source>Path of the configuration file</source>
        <translation>Chemin du fichier de configuration</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>&amp;Parcourir…</translation>
    </message>
    <message>
        <source>Browse for a configuration file</source>
        <translation>Rechercher un fichier de configuration</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>&amp;Nom d’utilisateur&#xa0;:</translation>
    </message>
    <message>
        <source>VPN user name</source>
        <translation>Nom d’utilisateur VPN</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Mot de passe&#xa0;:</translation>
    </message>
    <message>
        <source>VPN password</source>
        <translation>Mot de passe VPN</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Enregistrer</translation>
    </message>
    <message>
        <source>Save configuration and login</source>
        <translation>Enregistrer la configuration et les identifiants</translation>
    </message>
</context>
<context>
    <name>quorvane::TrayPresence</name>
    <message>
        <source>Change IP</source>
        <translation>Changer d’IP</translation>
    </message>
    <message>
        <source>Copy IP</source>
        <translation>Copier l’IP</translation>
    </message>
    <message>
        <source>Check IP in Browser</source>
        <translation>Vérifier l’IP dans le navigateur</translation>
    </message>
    <message>
        <source>Show Quorvane</source>
        <translation>Afficher Quorvane</translation>
    </message>
    <message>
        <source>Refresh Locations</source>
        <translation>Actualiser les emplacements</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>Paramètres…</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>À propos de Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Quitter Quorvane</translation>
    </message>
    <message>
        <source>Quorvane: your IP is not hidden</source>
        <translation>Quorvane&#xa0;: votre IP n’est pas masquée</translation>
    </message>
    <message>
        <source>Quorvane: searching for an available IP</source>
        <translation>Quorvane&#xa0;: recherche d’une IP disponible</translation>
    </message>
    <message>
        <source>Quorvane: your IP is hidden behind %1</source>
        <translation>Quorvane&#xa0;: votre IP est masquée derrière %1</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
</context>
<context>
    <name>quorvane::VpnPane</name>
    <message>
        <source>Open OpenVPN Configuration</source>
        <translation>Ouvrir une configuration OpenVPN</translation>
    </message>
    <message>
        <source>OpenVPN configurations (%1)</source>
        <translation>Configurations OpenVPN (%1)</translation>
    </message>
</context>
<context>
    <name>quorvane::WebPages</name>
    <message>
        <source>No web browser could be opened.</source>
        <translation>Aucun navigateur web n’a pu être ouvert.</translation>
    </message>
    <message>
        <source>The page is %1</source>
        <translation>La page est %1</translation>
    </message>
</context>
</TS>
