<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- The string table, kept by hand: lupdate must not run over it. The contexts only group the ids. -->
<TS version="2.1" language="it_IT">
<context>
    <name>general</name>
    <message id="2">
        <source></source>
        <translation>Annulla</translation>
    </message>
    <message id="6">
        <source></source>
        <translation>Sì</translation>
    </message>
    <message id="7">
        <source></source>
        <translation>No</translation>
    </message>
    <message id="44">
        <source></source>
        <translation>&amp;Chiudi</translation>
    </message>
    <message id="50">
        <source></source>
        <translation>Errore</translation>
    </message>
    <message id="51">
        <source></source>
        <translation>Attenzione</translation>
    </message>
</context>
<context>
    <name>frmModem</name>
    <message id="501">
        <source></source>
        <translation>&amp;Marca e modello del modem:</translation>
    </message>
    <message id="502">
        <source></source>
        <translation>Collegamento remoto</translation>
    </message>
    <message id="503">
        <source></source>
        <translation>&amp;Numero da chiamare:</translation>
    </message>
    <message id="504">
        <source></source>
        <translation>&amp;Tentativi di importazione:</translation>
    </message>
    <message id="505">
        <source></source>
        <translation>Configurazione modem</translation>
    </message>
    <message id="506">
        <source></source>
        <translation>Stringa di &amp;inizializzazione:</translation>
    </message>
    <message id="507">
        <source></source>
        <translation>Stringa di &amp;reset:</translation>
    </message>
    <message id="508">
        <source></source>
        <translation>Tipo di selezione</translation>
    </message>
    <message id="509">
        <source></source>
        <translation>A t&amp;oni</translation>
    </message>
    <message id="510">
        <source></source>
        <translation>A im&amp;pulsi</translation>
    </message>
</context>
<context>
    <name>frmConnessione</name>
    <message id="601">
        <source></source>
        <translation>Connessione modem</translation>
    </message>
    <message id="602">
        <source></source>
        <translation>Stato:</translation>
    </message>
</context>
<context>
    <name>frmDettaglio</name>
    <message id="701">
        <source></source>
        <translation>Corvane Recorder - Configurazione</translation>
    </message>
    <message id="702">
        <source></source>
        <translation>&amp;Nome del sito</translation>
    </message>
    <message id="703">
        <source></source>
        <translation>&amp;Codice</translation>
    </message>
    <message id="704">
        <source></source>
        <translation>Sito &amp;abilitato</translation>
    </message>
    <message id="705">
        <source></source>
        <translation>Connessione|Acquisizione|File</translation>
    </message>
    <message id="706">
        <source></source>
        <translation>Dispositi&amp;vo:</translation>
    </message>
    <message id="707">
        <source></source>
        <translation>Tipo di collegamento</translation>
    </message>
    <message id="708">
        <source></source>
        <translation>Collegamento &amp;locale</translation>
    </message>
    <message id="709">
        <source></source>
        <translation>Collegamento &amp;remoto</translation>
    </message>
    <message id="710">
        <source></source>
        <translation>&amp;Modem...</translation>
    </message>
    <message id="711">
        <source></source>
        <translation>Handshake</translation>
    </message>
    <message id="712">
        <source></source>
        <translation>&amp;Tipo:</translation>
    </message>
    <message id="713">
        <source></source>
        <translation>Stato &amp;Buffer...</translation>
    </message>
    <message id="714">
        <source></source>
        <translation>Parametri di connessione</translation>
    </message>
    <message id="715">
        <source></source>
        <translation>V&amp;elocità:</translation>
    </message>
    <message id="716">
        <source></source>
        <translation>Bit di &amp;dati:</translation>
    </message>
    <message id="717">
        <source></source>
        <translation>&amp;Parità:</translation>
    </message>
    <message id="718">
        <source></source>
        <translation>Bit di &amp;stop:</translation>
    </message>
    <message id="719">
        <source></source>
        <translation>&amp;Ricorrenza:</translation>
    </message>
    <message id="720">
        <source></source>
        <translation>Parametri</translation>
    </message>
    <message id="721">
        <source></source>
        <translation>Nessuno</translation>
    </message>
    <message id="722">
        <source></source>
        <translation>Acquisisci &amp;ogni</translation>
    </message>
    <message id="723">
        <source></source>
        <translation>ora/e</translation>
    </message>
    <message id="724">
        <source></source>
        <translation>A&amp;vanzate...</translation>
    </message>
    <message id="725">
        <source></source>
        <translation>File &amp;dati:</translation>
    </message>
    <message id="726">
        <source></source>
        <translation>File di sca&amp;mbio:</translation>
    </message>
    <message id="727">
        <source></source>
        <translation>File &amp;storico:</translation>
    </message>
    <message id="728">
        <source></source>
        <translation>File di &amp;log:</translation>
    </message>
    <message id="729">
        <source></source>
        <translation>Sfoglia...</translation>
    </message>
</context>
<context>
    <name>frmFileAvanzate</name>
    <message id="801">
        <source></source>
        <translation>Avanzate</translation>
    </message>
    <message id="802">
        <source></source>
        <translation>Avvisare quando il &amp;file dati non è disponibile</translation>
    </message>
    <message id="803">
        <source></source>
        <translation>&amp;Avvisare dopo:</translation>
    </message>
    <message id="804">
        <source></source>
        <translation>Avvisare per &amp;mancanza di spazio sul disco C:</translation>
    </message>
    <message id="805">
        <source></source>
        <translation>&amp;Spazio minimo:</translation>
    </message>
</context>
<context>
    <name>frmSX</name>
    <message id="901">
        <source></source>
        <translation>Stato</translation>
    </message>
    <message id="902">
        <source></source>
        <translation>Memoria totale:</translation>
    </message>
    <message id="903">
        <source></source>
        <translation>Memoria occupata:</translation>
    </message>
    <message id="904">
        <source></source>
        <translation>% Occupazione memoria:</translation>
    </message>
    <message id="905">
        <source></source>
        <translation>Ripetizioni:</translation>
    </message>
    <message id="906">
        <source></source>
        <translation>Ore da ultimo scarico:</translation>
    </message>
    <message id="907">
        <source></source>
        <translation>Ore da ultimo arrivo dati:</translation>
    </message>
    <message id="908">
        <source></source>
        <translation>Guasti:</translation>
    </message>
    <message id="909">
        <source></source>
        <translation>Versione Stratobox:</translation>
    </message>
    <message id="910">
        <source></source>
        <translation>Versione firmware:</translation>
    </message>
    <message id="911">
        <source></source>
        <translation>Data:</translation>
    </message>
    <message id="912">
        <source></source>
        <translation>Ora:</translation>
    </message>
    <message id="913">
        <source></source>
        <translation>Selezionatore:</translation>
    </message>
    <message id="914">
        <source></source>
        <translation>Stampante:</translation>
    </message>
    <message id="915">
        <source></source>
        <translation>N/A</translation>
    </message>
    <message id="916">
        <source></source>
        <translation>&amp;Data:</translation>
    </message>
    <message id="917">
        <source></source>
        <translation>&amp;Ora:</translation>
    </message>
    <message id="918">
        <source></source>
        <translation>&amp;Stato</translation>
    </message>
    <message id="919">
        <source></source>
        <translation>&amp;Imposta Data/Ora</translation>
    </message>
    <message id="920">
        <source></source>
        <translation>Stato Buffer</translation>
    </message>
</context>
<context>
    <name>frmSiti</name>
    <message id="1001">
        <source></source>
        <translation>Configurazione Corvane Recorder</translation>
    </message>
    <message id="1002">
        <source></source>
        <translation>&amp;Aggiungi...</translation>
    </message>
    <message id="1003">
        <source></source>
        <translation>&amp;Rimuovi...</translation>
    </message>
    <message id="1004">
        <source></source>
        <translation>&amp;Proprietà...</translation>
    </message>
    <message id="1005">
        <source></source>
        <translation>Sito</translation>
    </message>
    <message id="1006">
        <source></source>
        <translation>Codice</translation>
    </message>
    <message id="1007">
        <source></source>
        <translation>Abilitato</translation>
    </message>
    <message id="1008">
        <source></source>
        <translation>Ricorrenza</translation>
    </message>
</context>
<context>
    <name>frmTrasfAvanzate</name>
    <message id="1101">
        <source></source>
        <translation>Avanzate</translation>
    </message>
    <message id="1102">
        <source></source>
        <translation>Può essere necessario aggiungere ai dati provenienti dal centralino alcuni campi per completare o rimpiazzare le informazioni trasmesse.</translation>
    </message>
    <message id="1103">
        <source></source>
        <translation>Marcare tra le opzioni sottostanti quelle desiderate.</translation>
    </message>
    <message id="1104">
        <source></source>
        <translation>Aggiungere &amp;data alle righe</translation>
    </message>
    <message id="1105">
        <source></source>
        <translation>Aggiungere &amp;ora alle righe</translation>
    </message>
    <message id="1106">
        <source></source>
        <translation>&amp;Eliminare caratteri Null</translation>
    </message>
    <message id="1107">
        <source></source>
        <translation>&amp;Correggere CR/LF</translation>
    </message>
</context>
<context>
    <name>frmModem messages</name>
    <message id="10501">
        <source></source>
        <translation>Generico</translation>
    </message>
    <message id="10502">
        <source></source>
        <translation>È necessario inserire il numero di telefono</translation>
    </message>
    <message id="10503">
        <source></source>
        <translation>È necessario inserire il numero di tentativi di importazione</translation>
    </message>
    <message id="10504">
        <source></source>
        <translation>Il numero di tentativi di importazione non può essere minore di 1</translation>
    </message>
    <message id="10505">
        <source></source>
        <translation>È necessario inserire la stringa di inizializzazione del modem</translation>
    </message>
    <message id="10506">
        <source></source>
        <translation>È necessario inserire la stringa di reset del modem</translation>
    </message>
</context>
<context>
    <name>frmConnessione messages</name>
    <message id="10601">
        <source></source>
        <translation>Connessione in corso..</translation>
    </message>
    <message id="10602">
        <source></source>
        <translation>Impossibile connettersi. Il modem non risponde</translation>
    </message>
    <message id="10603">
        <source></source>
        <translation>Connessione</translation>
    </message>
    <message id="10604">
        <source></source>
        <translation>Disconnessione in corso..</translation>
    </message>
    <message id="10605">
        <source></source>
        <translation>Impossibile disconnettersi. Il modem non risponde</translation>
    </message>
    <message id="10606">
        <source></source>
        <translation>Disconnessione</translation>
    </message>
</context>
<context>
    <name>frmDettaglio messages</name>
    <message id="10701">
        <source></source>
        <translation>Inserire correttamente l'ora di inizio.</translation>
    </message>
    <message id="10702">
        <source></source>
        <translation>Inserire correttamente l'intervallo di importazione</translation>
    </message>
    <message id="10703">
        <source></source>
        <translation>È necessario selezionare almeno un giorno per l'importazione settimanale</translation>
    </message>
    <message id="10704">
        <source></source>
        <translation>È necessario inserire il nome del file dati</translation>
    </message>
    <message id="10705">
        <source></source>
        <translation>È necessario inserire il nome del file di scambio dati</translation>
    </message>
    <message id="10706">
        <source></source>
        <translation>È necessario inserire il nome del file storico</translation>
    </message>
    <message id="10707">
        <source></source>
        <translation>È necessario inserire il nome del file di log</translation>
    </message>
    <message id="10708">
        <source></source>
        <translation>È necessario inserire il nome del sito</translation>
    </message>
    <message id="10709">
        <source></source>
        <translation>È necessario inserire il codice del sito</translation>
    </message>
    <message id="10710">
        <source></source>
        <translation>I nomi dei file per il salvataggio dei dati </translation>
    </message>
    <message id="10711">
        <source></source>
        <translation>corrispondono </translation>
    </message>
    <message id="10712">
        <source></source>
        <translation>a quelli inseriti per il sito </translation>
    </message>
    <message id="10713">
        <source></source>
        <translation>Per evitare possibili perdite di dati, </translation>
    </message>
    <message id="10714">
        <source></source>
        <translation>si consiglia di modificare il nome dei file.</translation>
    </message>
    <message id="10715">
        <source></source>
        <translation>Si desidera salvare ugualmente?</translation>
    </message>
    <message id="10716">
        <source></source>
        <translation>Esiste già un sito con lo stesso nome o codice</translation>
    </message>
    <message id="10717">
        <source></source>
        <translation>Lunedì</translation>
    </message>
    <message id="10718">
        <source></source>
        <translation>Martedì</translation>
    </message>
    <message id="10719">
        <source></source>
        <translation>Mercoledì</translation>
    </message>
    <message id="10720">
        <source></source>
        <translation>Giovedì</translation>
    </message>
    <message id="10721">
        <source></source>
        <translation>Venerdì</translation>
    </message>
    <message id="10722">
        <source></source>
        <translation>Sabato</translation>
    </message>
    <message id="10723">
        <source></source>
        <translation>Domenica</translation>
    </message>
    <message id="10724">
        <source></source>
        <translation>Continua</translation>
    </message>
    <message id="10725">
        <source></source>
        <translation>Oraria</translation>
    </message>
    <message id="10726">
        <source></source>
        <translation>Giornaliera</translation>
    </message>
    <message id="10727">
        <source></source>
        <translation>Settimanale</translation>
    </message>
    <message id="10728">
        <source></source>
        <translation>Corvane recorder acquisisce i dati di questa sede senza mai interrompersi. Attenzione, perchè in questo caso ci può essere una sola sede abilitata.</translation>
    </message>
    <message id="10729">
        <source></source>
        <translation>Corvane recorder acquisisce i dati di questa sede con l'intervallo orario indicato dall'utente nel campo ""ad ogni"", iniziando l'acquisizione dall' ora inserita nel campo ""a partire dalle"".</translation>
    </message>
    <message id="10730">
        <source></source>
        <translation>Corvane recorder acquisisce i dati di questa sede con l'intervallo giornaliero indicato dall'utente nel campo ""ogni"" all' ora inserita nel campo ""alle ore"".</translation>
    </message>
    <message id="10731">
        <source></source>
        <translation>L'aquisizione avverrà con l'intervallo settimanale indicato dall'utente nel campo ""ogni"" all'ora inserita nel campo ""alle ore. ""Nella lista è possibile scegliere i giorni in cui deve avvenire la lettura marcandoli con un segno di visto.</translation>
    </message>
    <message id="10732">
        <source></source>
        <translation>ora/e a partire dalle</translation>
    </message>
    <message id="10733">
        <source></source>
        <translation>giorno/i alle ore</translation>
    </message>
    <message id="10734">
        <source></source>
        <translation>settimana/e alle ore</translation>
    </message>
    <message id="10735">
        <source></source>
        <translation>Nessuno</translation>
    </message>
    <message id="10736">
        <source></source>
        <translation>Nessuna</translation>
    </message>
    <message id="10737">
        <source></source>
        <translation>Pari</translation>
    </message>
    <message id="10738">
        <source></source>
        <translation>Dispari</translation>
    </message>
</context>
<context>
    <name>frmFileAvanzate messages</name>
    <message id="10801">
        <source></source>
        <translation>Manca il timeout di file non disponibile.</translation>
    </message>
    <message id="10802">
        <source></source>
        <translation>Manca il parametro di soglia per mancanza spazio su hard disk.</translation>
    </message>
</context>
<context>
    <name>frmSX messages</name>
    <message id="10901">
        <source></source>
        <translation>La data inserita non e' valida.</translation>
    </message>
    <message id="10902">
        <source></source>
        <translation>L' ora inserita non e' valida.</translation>
    </message>
    <message id="10903">
        <source></source>
        <translation>Impossibile aprire Com</translation>
    </message>
    <message id="10904">
        <source></source>
        <translation>Impossibile ricevere lo stato del buffer. Verificare che il buffer sia collegato correttamente.</translation>
    </message>
    <message id="10905">
        <source></source>
        <translation>Nessuna</translation>
    </message>
    <message id="10906">
        <source></source>
        <translation>Parziale</translation>
    </message>
    <message id="10907">
        <source></source>
        <translation>Totale</translation>
    </message>
    <message id="10908">
        <source></source>
        <translation>Sconosciuta</translation>
    </message>
    <message id="10909">
        <source></source>
        <translation>Non attivo</translation>
    </message>
    <message id="10910">
        <source></source>
        <translation>Attivo</translation>
    </message>
    <message id="10911">
        <source></source>
        <translation>Attiva</translation>
    </message>
    <message id="10912">
        <source></source>
        <translation>Non attiva</translation>
    </message>
    <message id="10913">
        <source></source>
        <translation>Nessuno</translation>
    </message>
    <message id="10914">
        <source></source>
        <translation>Caduta 220 V</translation>
    </message>
    <message id="10915">
        <source></source>
        <translation>Batteria</translation>
    </message>
    <message id="10916">
        <source></source>
        <translation>Non rilevabili</translation>
    </message>
    <message id="10917">
        <source></source>
        <translation>Non presente</translation>
    </message>
    <message id="10918">
        <source></source>
        <translation>Presente</translation>
    </message>
</context>
<context>
    <name>frmSiti messages</name>
    <message id="11001">
        <source></source>
        <translation>Impossibile abilitare piu' siti insieme ad un sito con importazione continua.</translation>
    </message>
    <message id="11002">
        <source></source>
        <translation>Attenzione, sta per essere rimosso un sito.</translation>
    </message>
    <message id="11003">
        <source></source>
        <translation>Si desidera continuare?</translation>
    </message>
    <message id="11004">
        <source></source>
        <translation>Rimuovi</translation>
    </message>
    <message id="11005">
        <source></source>
        <translation>Impossibile leggere dal file di CorvRec.ini</translation>
    </message>
    <message id="11006">
        <source></source>
        <translation>Errore leggendo la porta com.</translation>
    </message>
    <message id="11007">
        <source></source>
        <translation>Configurazione Corvane Recorder</translation>
    </message>
</context>
<context>
    <name>option dialogs: help and units</name>
    <message id="11101">
        <source></source>
        <translation>Selezionando quest'opzione Corvane Recorder controllerà che ogni riga ricevuta termini con la sequenza "Carriage Return - Line Feed.", correggendo quei casi che non soddisfano questa condizione</translation>
    </message>
    <message id="11102">
        <source></source>
        <translation>Selezionando quest'opzione verrà aggiunta in testa ad ogni riga inviata dal centralino la data del momento di acquisizione. Il formato del dato aggiunto è aaaammgg</translation>
    </message>
    <message id="11103">
        <source></source>
        <translation>Selezionando quest'opzione Corvane Recorder eliminerà dai dati ricevuti eventuali caratteri di Null generati dai disturbi sulla linea.</translation>
    </message>
    <message id="11104">
        <source></source>
        <translation>Selezionando quest'opzione verrà aggiunta in testa ad ogni riga inviata dal centralino l'ora del momento di acquisizione. Il formato del dato aggiunto è hhmmss</translation>
    </message>
    <message id="11105">
        <source></source>
        <translation>Secondi</translation>
    </message>
    <message id="11106">
        <source></source>
        <translation>MByte</translation>
    </message>
</context>
<context>
    <name>messages of later origin</name>
    <message id="20001">
        <source></source>
        <translation>Il sito non è stato salvato per intero: manca la scelta in un elenco, oppure un carattere Xon o Xoff è vuoto. Completare il campo e premere di nuovo OK.</translation>
    </message>
    <message id="20002">
        <source></source>
        <translation>Impostazioni del modem</translation>
    </message>
    <message id="20003">
        <source></source>
        <translation>Setup</translation>
    </message>
    <message id="20004">
        <source></source>
        <translation>Elenco dei siti</translation>
    </message>
    <message id="20005">
        <source></source>
        <translation>Giorni della settimana</translation>
    </message>
    <message id="20006">
        <source></source>
        <translation>Ora di inizio</translation>
    </message>
    <message id="20007">
        <source></source>
        <translation>Modem:</translation>
    </message>
    <message id="20008">
        <source></source>
        <translation>Guida di Corvane Recorder</translation>
    </message>
    <message id="20009">
        <source></source>
        <translation>&amp;Sommario</translation>
    </message>
    <message id="20010">
        <source></source>
        <translation>C&amp;erca:</translation>
    </message>
    <message id="20011">
        <source></source>
        <translation>Non trovato</translation>
    </message>
    <message id="20012">
        <source></source>
        <translation>Testo della guida</translation>
    </message>
    <message id="20013">
        <source></source>
        <translation>sola lettura</translation>
    </message>
    <message id="20014">
        <source></source>
        <translation>&amp;Duplica...</translation>
    </message>
    <message id="20015">
        <source></source>
        <translation>Sfoglia per il file dati</translation>
    </message>
    <message id="20016">
        <source></source>
        <translation>Sfoglia per il file di scambio</translation>
    </message>
    <message id="20017">
        <source></source>
        <translation>Sfoglia per il file storico</translation>
    </message>
    <message id="20018">
        <source></source>
        <translation>Xon: carattere di controllo</translation>
    </message>
    <message id="20019">
        <source></source>
        <translation>Xoff: carattere di controllo</translation>
    </message>
    <message id="20020">
        <source></source>
        <translation>Carattere Xon</translation>
    </message>
    <message id="20021">
        <source></source>
        <translation>Carattere Xoff</translation>
    </message>
    <message id="20022">
        <source></source>
        <translation>elenco pieno: al prossimo avvio mancheranno gli ultimi siti</translation>
    </message>
    <message id="20101">
        <source></source>
        <translation>Apre i dati di un sito nuovo, già abilitato.</translation>
    </message>
    <message id="20102">
        <source></source>
        <translation>Dopo una conferma elimina dal file il sito selezionato con tutta la sua sezione.</translation>
    </message>
    <message id="20103">
        <source></source>
        <translation>Apre i dati del sito selezionato, come il doppio clic e Invio.</translation>
    </message>
    <message id="20104">
        <source></source>
        <translation>Il nome che si legge nell'elenco; gli spazi all'inizio e alla fine vengono tolti.</translation>
    </message>
    <message id="20105">
        <source></source>
        <translation>Il nome della sezione del sito nel file; uscendo dal campo diventa maiuscolo.</translation>
    </message>
    <message id="20106">
        <source></source>
        <translation>Se la casella è selezionata, il registratore acquisisce i dati del sito.</translation>
    </message>
    <message id="20107">
        <source></source>
        <translation>L'apparecchio collegato: dalla scelta dipende quali altri campi si possono usare.</translation>
    </message>
    <message id="20108">
        <source></source>
        <translation>Apre la finestra che legge lo stato dello Stratobox e ne imposta l'orologio.</translation>
    </message>
    <message id="20109">
        <source></source>
        <translation>L'apparecchio è collegato con un cavo alla porta seriale.</translation>
    </message>
    <message id="20110">
        <source></source>
        <translation>L'apparecchio si raggiunge per telefono, con il modem.</translation>
    </message>
    <message id="20111">
        <source></source>
        <translation>Apre le impostazioni del modem, con il numero da chiamare.</translation>
    </message>
    <message id="20112">
        <source></source>
        <translation>Il controllo di flusso: nessuno, con i caratteri Xon e Xoff (Software) o con i segnali della porta (Hardware).</translation>
    </message>
    <message id="20113">
        <source></source>
        <translation>Il carattere che fa riprendere la trasmissione; se la casella è selezionata, è un carattere di controllo.</translation>
    </message>
    <message id="20114">
        <source></source>
        <translation>Il carattere che sospende la trasmissione; se la casella è selezionata, è un carattere di controllo.</translation>
    </message>
    <message id="20115">
        <source></source>
        <translation>La lettera che insieme a Ctrl dà il carattere: di solito Q per Xon, S per Xoff.</translation>
    </message>
    <message id="20116">
        <source></source>
        <translation>La velocità in bit al secondo, la stessa impostata sull'apparecchio.</translation>
    </message>
    <message id="20117">
        <source></source>
        <translation>Quanti bit di dati ha ogni carattere: lo stesso valore impostato sull'apparecchio.</translation>
    </message>
    <message id="20118">
        <source></source>
        <translation>Il controllo di parità di ogni carattere: lo stesso impostato sull'apparecchio.</translation>
    </message>
    <message id="20119">
        <source></source>
        <translation>Quanti bit chiudono ogni carattere: lo stesso valore impostato sull'apparecchio.</translation>
    </message>
    <message id="20120">
        <source></source>
        <translation>Quando avviene l'acquisizione: senza interruzione, oppure a intervalli di ore, giorni o settimane.</translation>
    </message>
    <message id="20121">
        <source></source>
        <translation>L'intervallo: ore e minuti per Oraria, giorni per Giornaliera, settimane per Settimanale.</translation>
    </message>
    <message id="20122">
        <source></source>
        <translation>L'ora della prima acquisizione per Oraria, di ogni acquisizione per Giornaliera e Settimanale.</translation>
    </message>
    <message id="20123">
        <source></source>
        <translation>I giorni dell'acquisizione settimanale; almeno uno deve avere il segno di spunta.</translation>
    </message>
    <message id="20124">
        <source></source>
        <translation>Apre le trasformazioni che il registratore applica a ogni riga ricevuta.</translation>
    </message>
    <message id="20125">
        <source></source>
        <translation>Il file in cui il registratore scrive i dati acquisiti.</translation>
    </message>
    <message id="20126">
        <source></source>
        <translation>Il file che il registratore usa per lo scambio dei dati.</translation>
    </message>
    <message id="20127">
        <source></source>
        <translation>Il file in cui il registratore conserva lo storico.</translation>
    </message>
    <message id="20128">
        <source></source>
        <translation>Il file di log del registratore, uno solo per tutti i siti: cambiarlo qui lo cambia per tutti.</translation>
    </message>
    <message id="20129">
        <source></source>
        <translation>Apre una finestra in cui scegliere il file del campo accanto.</translation>
    </message>
    <message id="20130">
        <source></source>
        <translation>Apre gli avvisi sul file dati e sullo spazio su disco.</translation>
    </message>
    <message id="20131">
        <source></source>
        <translation>Mette all'inizio di ogni riga la data di acquisizione, nel formato aaaammgg.</translation>
    </message>
    <message id="20132">
        <source></source>
        <translation>Mette all'inizio di ogni riga l'ora di acquisizione, nel formato hhmmss.</translation>
    </message>
    <message id="20133">
        <source></source>
        <translation>Toglie i caratteri Null generati dai disturbi sulla linea.</translation>
    </message>
    <message id="20134">
        <source></source>
        <translation>Fa terminare ogni riga con la sequenza CR-LF.</translation>
    </message>
    <message id="20135">
        <source></source>
        <translation>Se la casella è selezionata, il registratore avvisa quando manca il file dati.</translation>
    </message>
    <message id="20136">
        <source></source>
        <translation>Dopo quanti secondi senza file dati il registratore avvisa.</translation>
    </message>
    <message id="20137">
        <source></source>
        <translation>Se la casella è selezionata, il registratore avvisa quando sul disco C: c'è poco spazio.</translation>
    </message>
    <message id="20138">
        <source></source>
        <translation>Sotto quanti MByte liberi il registratore avvisa.</translation>
    </message>
    <message id="20139">
        <source></source>
        <translation>Un modello del catalogo: sceglierlo riempie la stringa di inizializzazione.</translation>
    </message>
    <message id="20140">
        <source></source>
        <translation>Il numero dello Stratobox, con l'eventuale prefisso per la linea esterna; non viene controllato.</translation>
    </message>
    <message id="20141">
        <source></source>
        <translation>Quante volte il registratore tenta l'importazione, almeno 1.</translation>
    </message>
    <message id="20142">
        <source></source>
        <translation>I comandi che preparano il modem alla chiamata.</translation>
    </message>
    <message id="20143">
        <source></source>
        <translation>I comandi che riportano il modem ai valori di partenza, di solito &amp;F.</translation>
    </message>
    <message id="20144">
        <source></source>
        <translation>La linea usa la selezione a toni, con il comando ATDT.</translation>
    </message>
    <message id="20145">
        <source></source>
        <translation>La linea usa la selezione a impulsi, con il comando ATDP.</translation>
    </message>
    <message id="20146">
        <source></source>
        <translation>La capacità della memoria, come la trasmette l'apparecchio.</translation>
    </message>
    <message id="20147">
        <source></source>
        <translation>Se la memoria è vuota (Nessuna), occupata in parte (Parziale) o piena (Totale).</translation>
    </message>
    <message id="20148">
        <source></source>
        <translation>La parte di memoria occupata, in percentuale.</translation>
    </message>
    <message id="20149">
        <source></source>
        <translation>Il numero di ripetizioni; lo trasmette soltanto lo Stratobox 1.1.</translation>
    </message>
    <message id="20150">
        <source></source>
        <translation>Il tempo dall'ultimo scarico dei dati: in ore per lo Stratobox 1.1, come data per gli altri modelli.</translation>
    </message>
    <message id="20151">
        <source></source>
        <translation>Il tempo dall'ultimo arrivo di dati: in ore per lo Stratobox 1.1, come data per gli altri modelli.</translation>
    </message>
    <message id="20152">
        <source></source>
        <translation>I guasti che l'apparecchio segnala.</translation>
    </message>
    <message id="20153">
        <source></source>
        <translation>La versione dell'apparecchio; la trasmettono soltanto lo Stratobox 2.0 e il 3.0.</translation>
    </message>
    <message id="20154">
        <source></source>
        <translation>La versione del programma interno dell'apparecchio.</translation>
    </message>
    <message id="20155">
        <source></source>
        <translation>La data dell'orologio dell'apparecchio al momento della lettura.</translation>
    </message>
    <message id="20156">
        <source></source>
        <translation>L'ora dell'orologio dell'apparecchio al momento della lettura.</translation>
    </message>
    <message id="20157">
        <source></source>
        <translation>Lo stato del selezionatore; soltanto per lo Stratobox 1.1.</translation>
    </message>
    <message id="20158">
        <source></source>
        <translation>Lo stato della stampante: se è attiva (Stratobox 1.1) o presente (Stratobox Buffer).</translation>
    </message>
    <message id="20159">
        <source></source>
        <translation>Se è presente un modem; soltanto per lo Stratobox Buffer.</translation>
    </message>
    <message id="20160">
        <source></source>
        <translation>Legge lo stato dello Stratobox; se il collegamento è remoto, prima chiama con il modem.</translation>
    </message>
    <message id="20161">
        <source></source>
        <translation>La data da impostare: giorno, mese e anno, con due cifre ciascuno.</translation>
    </message>
    <message id="20162">
        <source></source>
        <translation>L'ora da impostare: ore e minuti, da 00:00 a 23:59.</translation>
    </message>
    <message id="20163">
        <source></source>
        <translation>Invia allo Stratobox la data e l'ora dei due campi accanto.</translation>
    </message>
</context>
</TS>
